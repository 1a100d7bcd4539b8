// What the Nest server answers, and the authorisation code that it keeps.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <tembra/association.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "support/caller.h"
#include "support/running_sim.h"

namespace tembra::sim::test {
namespace {

constexpr const char* kCodeFile = "/tmp/Authcode";
enum : unsigned { kLink = 100, kUnlink = 109 };

std::string keptCode() {
  std::ifstream file(kCodeFile);
  if (!file) return "none";
  return {std::istreambuf_iterator<char>(file), {}};
}

class NestServerTest : public testing::Test {
 protected:
  // "command/status/value" of the answer.
  std::string hear() {
    const Heard heard = caller.hear();
    EXPECT_EQ(heard.length, sizeof(NestAnswer));
    const auto answer = heard.as<NestAnswer>();
    return std::to_string(answer.command) + "/" + std::to_string(answer.status) + "/" + std::to_string(answer.value);
  }
  std::string answerTo(unsigned command, const std::string& text = "") {
    caller.nest(command, text);
    return hear();
  }

  Caller caller;
  RunningSim sim;
};

TEST_F(NestServerTest, LinksAndUnlinksAnAccount) {
  EXPECT_EQ(answerTo(kLink, "ABCD-1234"), "121/0/0");
  EXPECT_EQ(keptCode(), "ABCD-1234");
  EXPECT_EQ(answerTo(kUnlink), "122/0/0");
  EXPECT_EQ(keptCode(), "none");
  EXPECT_EQ(answerTo(kUnlink), "122/0/0");
  EXPECT_EQ(sim.stop(), 0);
}

TEST_F(NestServerTest, ANewLinkReplacesTheCode) {
  answerTo(kLink, "a long old code");
  answerTo(kLink, "new");
  EXPECT_EQ(keptCode(), "new");
}

TEST_F(NestServerTest, RefusesToLinkWithoutACode) {
  EXPECT_EQ(answerTo(kLink), "124/-1/0");
  EXPECT_EQ(keptCode(), "none");
}

TEST_F(NestServerTest, TheLibrarySeesTheLink) {
  TembraAssociation* const library = TembraAssociation::LCDAssocInit();
  EXPECT_EQ(library->Nest_checkExist(), 0);
  answerTo(kLink, "code");
  EXPECT_EQ(library->Nest_checkExist(), 1);
  answerTo(kUnlink);
  EXPECT_EQ(library->Nest_checkExist(), 0);
}

TEST_F(NestServerTest, TheCodeIsForThisUserOnly) {
  answerTo(kLink, "secret");
  struct stat status {};
  ASSERT_EQ(stat(kCodeFile, &status), 0);
  EXPECT_EQ(status.st_mode & 0777U, 0600U);
}

TEST_F(NestServerTest, NeverWritesThroughALink) {
  std::ofstream("/tmp/precious") << "precious";
  std::filesystem::create_symlink("/tmp/precious", kCodeFile);
  EXPECT_EQ(answerTo(kLink, "code"), "124/-1/0");
  EXPECT_EQ(keptCode(), "precious");
  EXPECT_EQ(sim.stop(), 1);
  EXPECT_NE(sim.program().errors().find("the authorisation code /tmp/Authcode cannot be written: "), std::string::npos);
}

TEST_F(NestServerTest, SaysEveryCommandAndStatusOnDemand) {
  struct {
    const char* demand;
    const char* answer;
  } const rows[] = {
      {"100", "100/0/0"},   {"121", "121/0/0"},     {"122", "122/0/0"},   {"123", "123/0/0"},
      {"124", "124/0/0"},   {"124 -1", "124/-1/0"}, {"124 5", "124/5/0"}, {"100 7 -2147483648", "100/7/-2147483648"},
      {"101 0", "101/0/0"}, {"99 -1 3", "99/-1/3"}, {"125", "125/0/0"},   {"-5 2147483647", "-5/2147483647/0"},
  };
  for (const auto& row : rows) {
    sim.tell(std::string("answer nest ") + row.demand);
    EXPECT_EQ(hear(), row.answer);
  }
  for (const char* demand : {"answer nest", "answer nest x", "answer nest 1 x", "answer nest 1 2 3 4"}) {
    EXPECT_FALSE(sim.ask(demand).done) << demand;
  }
}

TEST_F(NestServerTest, WhatIsSaidOnDemandReplacesTheAnswerThatIsDue) {
  sim.tell("fault nest:late=600000");
  caller.nest(kLink, "code");
  EXPECT_NE(sim.ask("status").text.find("Nest server: answering"), std::string::npos);
  sim.tell("answer nest 124 -1");
  EXPECT_EQ(hear(), "124/-1/0");
  sim.awaitIdle();
}

TEST_F(NestServerTest, FaultsDistortItsAnswers) {
  sim.tell("fault nest:code=123");
  EXPECT_EQ(answerTo(kLink, "code"), "123/0/0");
  sim.tell("fault nest:code");
  EXPECT_EQ(answerTo(kLink, "code"), "124/0/0");
  sim.tell("fault nest:twice");
  EXPECT_EQ(answerTo(kUnlink), "122/0/0");
  EXPECT_EQ(hear(), "122/0/0");
}

TEST(NestServerOptions, TheCodeMayBeKeptElsewhere) {
  Caller caller;
  const RunningSim sim({"--authcode", "/tmp/elsewhere"});
  caller.nest(kLink, "code");
  caller.hear();
  EXPECT_TRUE(std::filesystem::exists("/tmp/elsewhere"));
  EXPECT_EQ(keptCode(), "none");
}

}  // namespace
}  // namespace tembra::sim::test
