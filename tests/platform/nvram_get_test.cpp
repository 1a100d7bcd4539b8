// The settings command of the stand-ins.
#include <gtest/gtest.h>

#include <fstream>
#include <string>
#include <vector>

#include "run_program.h"

namespace {

using tembra::test::freshPath;
using tembra::test::Outcome;
using tembra::test::runProgram;

Outcome nvramGet(const std::string& settingsFile, const std::string& key) {
  return runProgram({NVRAM_GET, "2860", key}, {{"TEMBRA_NVRAM", settingsFile}});
}

std::string settingsFile(const std::string& content) {
  std::string path = freshPath("settings");
  std::ofstream(path) << content;
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
    const Outcome outcome = nvramGet(settingsFile(row.content), "MeshSlaveID");
    EXPECT_EQ(outcome.out, row.printed) << row.content;
    EXPECT_EQ(outcome.err, "");
    EXPECT_EQ(outcome.status, 0);
  }
}

TEST(NvramGet, PrintsNothingAndFailsWithoutTheKey) {
  const std::string file = settingsFile("MeshSlaveIDs=1\nXMeshSlaveID=2\n MeshSlaveID=3\n#MeshSlaveID=4\nA=B=5\n=6\n");
  for (const char* key : {"MeshSlaveID", "meshslaveids", "Mesh*", "MeshSlaveID?", "MeshSlaveIDs=", "A=B", "", "."}) {
    const Outcome outcome = nvramGet(file, key);
    EXPECT_EQ(outcome.out + outcome.err, "") << key;
    EXPECT_EQ(outcome.status, 1) << key;
  }
}

TEST(NvramGet, PrintsNothingAndFailsWithoutTheFile) {
  for (const std::string& file : {freshPath("missing"), testing::TempDir(), std::string(), settingsFile("")}) {
    const Outcome outcome = nvramGet(file, "MeshSlaveID");
    EXPECT_EQ(outcome.out + outcome.err, "") << file;
    EXPECT_EQ(outcome.status, 1) << file;
  }
  EXPECT_EQ(runProgram({NVRAM_GET, "2860", "MeshSlaveID"}, {}).status, 1);
}

TEST(NvramGet, ExplainsItselfWhenCalledInAnotherWay) {
  const std::string file = settingsFile("MeshSlaveID=3\n");
  const std::vector<std::vector<std::string>> calls = {
      {NVRAM_GET}, {NVRAM_GET, "2860"}, {NVRAM_GET, "rt", "MeshSlaveID"}, {NVRAM_GET, "2860", "MeshSlaveID", "more"}};
  for (const std::vector<std::string>& call : calls) {
    const Outcome outcome = runProgram(call, {{"TEMBRA_NVRAM", file}});
    EXPECT_EQ(outcome.out, "");
    EXPECT_EQ(outcome.err, "usage: nvram_get 2860 KEY\n");
    EXPECT_EQ(outcome.status, 2);
  }
}

}  // namespace
