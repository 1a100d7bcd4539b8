// What the library takes on a router's flash and in every front end's memory.
#include <gtest/gtest.h>

#include "rig/elf_file.h"

namespace {

constexpr std::size_t kKiB = 1024;

TEST(Sizes, CodeConstantsAndVariablesFit) {
  EXPECT_LE(bench::ElfFile(TEMBRA_SMALL_LIBRARY).codeAndData(), 72 * kKiB);
  EXPECT_LE(bench::ElfFile(TEMBRA_FAST_LIBRARY).codeAndData(), 85 * kKiB);
}

// Of this build, whose -O1 takes more than the -Os of a router.
TEST(Sizes, FrontEndKitFits) { EXPECT_LE(bench::ElfFile(TEMBRA_FRONT_END_KIT).codeAndData(), 150 * kKiB); }

// The one that there is stands in the compiler's own start-up file; it calls nothing of ours.
TEST(Sizes, NothingOfOursRunsWhenTheLibraryIsLoaded) {
  for (const char* library : {TEMBRA_LIBRARY, TEMBRA_SMALL_LIBRARY, TEMBRA_FAST_LIBRARY}) {
    EXPECT_EQ(bench::ElfFile(library).initialisers(), 1U) << library;
  }
}

}  // namespace
