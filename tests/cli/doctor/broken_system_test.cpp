// Routers whose settings, platform libraries or versions are broken.
#include <gtest/gtest.h>
#include <link.h>
#include <sys/stat.h>

#include <cstddef>
#include <cstdlib>
#include <filesystem>

#include "doctor/broken_router.h"
#include "support/files.h"

namespace tembra::test {
namespace {

Kept wordAsMeshId() {
  writeFile("/tmp/words", "MeshSlaveID=three\n");
  return nullptr;
}

Kept longMeshId() {
  writeFile("/tmp/long", "MeshSlaveID=1234567890\n");
  return nullptr;
}

Kept hangingCommand() {
  std::filesystem::create_directory("/tmp/hanging");
  writeFile("/tmp/hanging/nvram_get", "#!/bin/sh\nsleep 60\n");
  EXPECT_EQ(chmod("/tmp/hanging/nvram_get", 0755), 0);
  return nullptr;
}

const kit::Settings kForeignLibrary = {{"LD_PRELOAD", TEMBRA_FOREIGN_LIBRARY}};

const BrokenRouter kBrokenSystems[] = {
    {"NoCommand", nothing, {"nvram"}, "nvram_get 2860 MeshSlaveID: not found.", {}, {{"PATH", "/bin:/usr/bin"}}},
    {"WordAsMeshId", wordAsMeshId, {"nvram"}, "\"three\", exit status 0.", {}, {{"TEMBRA_NVRAM", "/tmp/words"}}},
    {"LongMeshId",
     longMeshId,
     {"nvram"},
     "\"1234567890\", exit status 0. Set MeshSlaveID in the router's settings; until then it counts as 123456789.",
     {},
     {{"TEMBRA_NVRAM", "/tmp/long"}}},
    {"HangingCommand", hangingCommand, {"nvram"}, "no end in 2 s.", {}, {{"PATH", "/tmp/hanging:/bin:/usr/bin"}}},
    {"OtherTypeNames",
     nothing,
     {"platform-names", "versions"},
     R"(type 60 is "Zebra" in place of "GenericDevice")",
     {},
     kForeignLibrary},
    {"OtherVersion", nothing, {"platform-names", "versions"}, "libTembraAssoc 2.0.0,", {}, kForeignLibrary},
    {"SharedNames",
     nothing,
     {"program-names"},
     " defines buff, idle, tembra_version.",
     {"--program", TEMBRA_FOREIGN_LIBRARY}},
};

class BrokenSystem : public testing::TestWithParam<BrokenRouter> {};

TEST_P(BrokenSystem, IsFound) { expectFindings(GetParam()); }

INSTANTIATE_TEST_SUITE_P(Doctor, BrokenSystem, testing::ValuesIn(kBrokenSystems),
                         [](const auto& test) { return test.param.name; });

// A program that uses the library's variables, as it should.
TEST(ProgramNames, OfAFrontEndAreItsOwn) {
  const Ended doctor = runAssoc({"doctor", "--verbose", "--program", TEMBRA_ASSOC_PROGRAM});
  EXPECT_NE(doctor.output.find("tembra-assoc has no name of the library.\n"), std::string::npos) << doctor.output;
}

TEST(ProgramNames, OfAPipeAreNotWaitedFor) {
  ASSERT_EQ(mkfifo("/tmp/pipe", 0600), 0);
  const Ended doctor = runAssoc({"doctor", "--program", "/tmp/pipe"});
  EXPECT_NE(doctor.output.find("/tmp/pipe: it is no regular file."), std::string::npos) << doctor.output;
}

TEST(ProgramNames, OfNoProgramAreToldToBeUnknown) {
  const std::string library = readFile(TEMBRA_FOREIGN_LIBRARY);
  const std::string withoutSections = std::string(library).replace(offsetof(ElfW(Ehdr), e_shnum), 2, 2, '\0');
  const std::pair<std::string, const char*> files[] = {{"", "it is cut off"},
                                                       {std::string(5000, 'x'), "it is no ELF file"},
                                                       {library.substr(0, 100), "it is cut off"},
                                                       {withoutSections, "it has no table of sections"}};
  for (const auto& [content, fault] : files) {
    writeFile("/tmp/program", content);
    const Ended doctor = runAssoc({"doctor", "--program", "/tmp/program"});
    EXPECT_NE(doctor.output.find(std::string("/tmp/program: ") + fault), std::string::npos) << doctor.output;
  }
}

}  // namespace
}  // namespace tembra::test
