#include "footprint.h"

#include <gtest/gtest.h>
#include <malloc.h>

#include <filesystem>
#include <fstream>
#include <iterator>

extern "C" std::size_t bytesOfSanitizer() __asm__("__sanitizer_get_current_allocated_bytes") __attribute__((weak));

namespace {

constexpr std::size_t kHeapSlack = 256U << 10U;       // what the C library keeps at hand for a thread that frees
constexpr std::size_t kResidentSlack = 1024U << 10U;  // the same, and gaps between what lives long

std::size_t entriesIn(const char* folder) {
  const std::filesystem::directory_iterator entries(folder);
  return static_cast<std::size_t>(std::distance(begin(entries), end(entries)));
}

// The kernel's exact count; the one of statm is off by what each thread has not yet handed in.
std::size_t residentBytes() {
  std::ifstream file("/proc/self/smaps_rollup");
  std::string word;
  std::size_t kibibytes = 0;
  while (file >> word && word != "Rss:") {
  }
  file >> kibibytes;
  return kibibytes * 1024;
}

std::size_t allocatedBytes() { return isSanitized() ? bytesOfSanitizer() : mallinfo2().uordblks; }

}  // namespace

bool isSanitized() { return &bytesOfSanitizer != nullptr; }

Footprint Footprint::now() {
  if (!isSanitized()) malloc_trim(0);
  return {entriesIn("/proc/self/fd"), entriesIn("/proc/self/task"), allocatedBytes(), residentBytes()};
}

std::string Footprint::text() const {
  std::string text = std::to_string(descriptors);
  text.append(" descriptors, ").append(std::to_string(threads)).append(" threads, ");
  text.append(std::to_string(heap / 1024)).append(" KiB allocated, ");
  return text.append(std::to_string(resident / 1024)).append(" KiB resident");
}

void expectFlat(const Footprint& early, const Footprint& late) {
  EXPECT_EQ(late.descriptors, early.descriptors);
  EXPECT_EQ(late.threads, early.threads);
  EXPECT_LE(late.heap, early.heap + kHeapSlack);
  if (isSanitized()) return;
  EXPECT_LE(late.resident, early.resident + kResidentSlack);
}
