// Whatever the Hue or the Nest server answers, and when it answers nothing: a sentence, a status, and what becomes of
// the connection in the role of the web server and in any other.
#include <gtest/gtest.h>

#include <csignal>
#include <nlohmann/json.hpp>
#include <ostream>

#include "kit/text.h"
#include "support/sim_router.h"

namespace tembra::test {
namespace {

const std::vector<std::string> kRefresh = {"hue", "refresh", "02:a1:b2:0c:00:01"};
const std::vector<std::string> kLink = {"nest", "link", "a code"};
const std::vector<std::string> kUnlink = {"nest", "unlink", "--yes"};

struct ServerAnswer {
  const char* name;
  std::vector<std::string> arguments;
  const char* fault;
  int status;
  const char* sentence;
};

void PrintTo(const ServerAnswer& row, std::ostream* out) { *out << row.name; }

const ServerAnswer kServerAnswers[] = {
    {"HueBridges", kRefresh, "hue:code=0:always", 1, "The Hue server gave an answer that does not fit."},
    {"HueFailed", kRefresh, "hue:code=1:always", 1, "The Hue server failed."},
    {"HueAdded", kRefresh, "hue:code=2:always", 1, "The Hue server gave an answer that does not fit."},
    {"HueNoBridge", kRefresh, "hue:code=3:always", 1, "There is no such Hue bridge in the home's network."},
    {"HueButton", kRefresh, "hue:code=4:always", 1, "The link button of the Hue bridge was not pressed in time."},
    {"HueUnknownBridge", kRefresh, "hue:code=5:always", 1, "This Hue bridge has not been added."},
    {"HueBulbAdded", kRefresh, "hue:code=6:always", 1, "The Hue server gave an answer that does not fit."},
    {"HueDone", kRefresh, "hue:code=8:always", 0, ""},
    {"HueDone2", kRefresh, "hue:code=9:always", 0, ""},
    {"DiscoveryFailed", {"hue", "discover"}, "bridges:code:always", 1, "The Hue server failed."},
    {"Nest100", kLink, "nest:code=100:always", 1, "The Nest server gave an answer that does not fit."},
    {"Nest121", kLink, "nest:code=121:always", 0, ""},
    {"Nest122", kUnlink, "nest:code=122:always", 0, ""},
    {"Nest122ToALink", kLink, "nest:code=122:always", 1, "The Nest server gave an answer that does not fit."},
    {"Nest123", kUnlink, "nest:code=123:always", 1, "The Nest server gave an answer that does not fit."},
    {"Nest124Done", kUnlink, "nest:code=124:always", 0, ""},
    {"NestUnknown", kLink, "nest:code=130:always", 1, "The Nest server gave an answer that does not fit."},
};

class ServerAnswerTest : public testing::TestWithParam<ServerAnswer> {
 protected:
  static Ended runAs(const std::string& role) {
    std::vector<std::string> arguments = GetParam().arguments;
    arguments.insert(arguments.end(), {"--role", role});
    return runAssoc(arguments);
  }

  static void expectAnswer(const Ended& ended) {
    EXPECT_EQ(ended.status, GetParam().status) << ended.errors;
    EXPECT_NE(ended.sentence().find(GetParam().sentence), std::string::npos) << ended.errors;
  }
};

TEST_P(ServerAnswerTest, IsToldInEveryRole) {
  SimRouter router({"--fault", GetParam().fault});
  expectAnswer(runAs("lcd"));
  expectAnswer(runAs("web"));
  router.stop();
}

INSTANTIATE_TEST_SUITE_P(HueAndNest, ServerAnswerTest, testing::ValuesIn(kServerAnswers),
                         [](const auto& test) { return test.param.name; });

// The library says nothing of a Hue answer that it does not know, but closes the web server's connection all the same.
TEST(HueAnswer, ThatTheLibraryDoesNotKnowEndsTheWebServersWait) {
  SimRouter router({"--fault", "hue:code=7"});
  std::vector<std::string> arguments = kRefresh;
  arguments.insert(arguments.end(), {"--role", "web"});
  const Ended ended = runAssoc(arguments);
  EXPECT_EQ(ended.status, 1);
  EXPECT_NE(ended.sentence().find("The Hue server gave an answer that does not fit."), std::string::npos);
  router.stop();
}

struct NoAnswer {
  const char* name;
  std::vector<std::string> arguments;
  const char* fault;
  const char* begins;
  const char* server;
};

void PrintTo(const NoAnswer& row, std::ostream* out) { *out << row.name; }

const NoAnswer kNoAnswers[] = {
    {"HueIsSilent", kRefresh, "hue:lost", "refresh bridge", "Hue"},
    {"HueAnswersWithAnUnknownType", kRefresh, "hue:code=7", "refresh bridge", "Hue"},
    {"NestIsSilent", kUnlink, "nest:lost", "unlink the account", "Nest"},
};

class NoAnswerTest : public testing::TestWithParam<NoAnswer> {};

TEST_P(NoAnswerTest, EndsByTheLibrarysTimeOut) {
  SimRouter router({"--fault", GetParam().fault});
  std::vector<std::string> arguments = GetParam().arguments;
  arguments.emplace_back("--json");
  const Ended ended = runAssoc(arguments, Clock::kFast);
  EXPECT_EQ(ended.status, 1);
  const auto last = nlohmann::json::parse(kit::linesOf(ended.output).back());
  EXPECT_EQ(last.at("outcome"), "timed-out");
  EXPECT_EQ(last.at("text"), std::string("The ") + GetParam().server + " server did not answer in time.");
  router.stop();
}

TEST_P(NoAnswerTest, MayBeLeftByCtrlC) {
  SimRouter router({"--fault", GetParam().fault});
  Program program(assocCommand(GetParam().arguments));
  router.waitFor(GetParam().begins);
  program.signal(SIGINT);
  const Ended ended = program.end();
  EXPECT_EQ(ended.status, 130);
  EXPECT_TRUE(
      ended.errors.ends_with("tembra-assoc: Cancelled too late: what was asked for may be done all the same. Look "
                             "whether it was done before you "
                             "try again.\ntembra-assoc: interrupted.\n"))
      << ended.errors;
  const Told told = router.stop();
  EXPECT_EQ(told.zigbee.size() + told.zwave.size(), 0U) << "the radios have nothing to do with it";
}

INSTANTIATE_TEST_SUITE_P(HueAndNest, NoAnswerTest, testing::ValuesIn(kNoAnswers),
                         [](const auto& test) { return test.param.name; });

}  // namespace
}  // namespace tembra::test
