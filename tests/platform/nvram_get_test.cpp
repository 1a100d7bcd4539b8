// The settings command of the stand-ins.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "kit/program.h"
#include "kit/text.h"

namespace {

using kit::Ended;
using kit::Program;

Ended nvramGet(const std::string& settingsFile, const std::string& key) {
  return Program({NVRAM_GET, "2860", key}, {{"TEMBRA_NVRAM", settingsFile}}).end();
}

std::string settingsFile(const std::string& content) {
  std::string path = "/tmp/settings";
  kit::writeFile(path, content);
  return path;
}

struct Found {
  const char* content;
  const char* printed;
};

TEST(NvramGet, PrintsTheValueOfTheKey) {
  const std::vector<Found> cases = {
      {"MeshSlaveID=3\n", "3\n"},
      {"MeshSlaveID=3", "3\n"},
      {"MeshSlaveID=\n", "\n"},
      {"Other=1\nMeshSlaveID=17\nMore=2\n", "17\n"},
      {"MeshSlaveID=3\nMeshSlaveID=4\n", "4\n"},
      {"MeshSlaveID=a=b=c\n", "a=b=c\n"},
      {"MeshSlaveID=  two  words  \n", "  two  words  \n"},
      {"MeshSlaveID=-n\n", "-n\n"},
      {"MeshSlaveID=$(echo 9) `echo 9` $HOME ; echo 9 \\n %s *\n", "$(echo 9) `echo 9` $HOME ; echo 9 \\n %s *\n"},
  };
  for (const Found& row : cases) {
    const Ended outcome = nvramGet(settingsFile(row.content), "MeshSlaveID");
    EXPECT_EQ(outcome.output, row.printed) << row.content;
    EXPECT_EQ(outcome.errors, "");
    EXPECT_EQ(outcome.status, 0);
  }
}

TEST(NvramGet, PrintsNothingAndFailsWithoutTheKey) {
  const std::string file = settingsFile("MeshSlaveIDs=1\nXMeshSlaveID=2\n MeshSlaveID=3\n#MeshSlaveID=4\nA=B=5\n=6\n");
  for (const char* key : {"MeshSlaveID", "meshslaveids", "Mesh*", "MeshSlaveID?", "MeshSlaveIDs=", "A=B", "", "."}) {
    const Ended outcome = nvramGet(file, key);
    EXPECT_EQ(outcome.output + outcome.errors, "") << key;
    EXPECT_EQ(outcome.status, 1) << key;
  }
}

TEST(NvramGet, PrintsNothingAndFailsWithoutTheFile) {
  for (const std::string& file : {std::string("/tmp/missing"), testing::TempDir(), std::string(), settingsFile("")}) {
    const Ended outcome = nvramGet(file, "MeshSlaveID");
    EXPECT_EQ(outcome.output + outcome.errors, "") << file;
    EXPECT_EQ(outcome.status, 1) << file;
  }
  EXPECT_EQ(Program({NVRAM_GET, "2860", "MeshSlaveID"}).end().status, 1);
}

TEST(NvramGet, ExplainsItselfWhenCalledInAnotherWay) {
  const std::string file = settingsFile("MeshSlaveID=3\n");
  const std::vector<std::vector<std::string>> calls = {
      {NVRAM_GET}, {NVRAM_GET, "2860"}, {NVRAM_GET, "rt", "MeshSlaveID"}, {NVRAM_GET, "2860", "MeshSlaveID", "more"}};
  for (const std::vector<std::string>& call : calls) {
    const Ended outcome = Program(call, {{"TEMBRA_NVRAM", file}}).end();
    EXPECT_EQ(outcome.output, "");
    EXPECT_EQ(outcome.errors, "usage: nvram_get 2860 KEY\n");
    EXPECT_EQ(outcome.status, 2);
  }
}

}  // namespace
