// Whatever the Hue or the Nest server answers, and when it answers nothing: a sentence, a status, and what becomes of
// the connection in the role of the web server and in any other.
#include <gtest/gtest.h>

#include <csignal>
#include <nlohmann/json.hpp>
#include <ostream>

#include "support/sim_router.h"

namespace tembra::test {
namespace {

constexpr char kClosed[] = "The library has closed the connection, as it does for the web server.";

const std::vector<std::string> kRefresh = {"hue", "refresh", "02:a1:b2:0c:00:01"};
const std::vector<std::string> kLink = {"nest", "link", "a code"};
const std::vector<std::string> kLinkWithoutCode = {"nest", "link", ""};
const std::vector<std::string> kUnlink = {"nest", "unlink", "--yes"};

struct ServerAnswer {
  const char* name;
  std::vector<std::string> arguments;
  const char* fault;
  int status;
  const char* event;     ///< the line that tells it; empty: none
  const char* sentence;  ///< the last complaint; empty: none
};

void PrintTo(const ServerAnswer& row, std::ostream* out) { *out << row.name; }

const ServerAnswer kServerAnswers[] = {
    {"HueBridges", kRefresh, "hue:code=0:always", 1, "HUE_BRIDGES from Hue: 0 bridges\n",
     "the Hue server gave the answer to another command: HUE_BRIDGES (Hue bridges were found)."},
    {"HueFailed", kRefresh, "hue:code=1:always", 1, "HUE_FAILED\n", "the Hue server failed to do it."},
    {"HueAdded", kRefresh, "hue:code=2:always", 1, "HUE_ADDED from Hue\n",
     "the Hue server gave the answer to another command: HUE_ADDED (a Hue bridge was added)."},
    {"HueNoBridge", kRefresh, "hue:code=3:always", 1, "HUE_NO_BRIDGE from Hue\n",
     "there is no such Hue bridge in the home's network."},
    {"HueButton", kRefresh, "hue:code=4:always", 1, "HUE_BUTTON from Hue\n",
     "the link button of the Hue bridge was not pressed in time."},
    {"HueUnknownBridge", kRefresh, "hue:code=5:always", 1, "HUE_UNKNOWN_BRIDGE from Hue\n",
     "this Hue bridge has not been added; \"hue list\" tells those that have."},
    {"HueBulbAdded", kRefresh, "hue:code=6:always", 1, "HUE_BULB_ADDED from Hue\n",
     "the Hue server gave the answer to another command: HUE_BULB_ADDED (a Hue bulb was added)."},
    {"HueDone", kRefresh, "hue:code=8:always", 0, "HUE_DONE from Hue\n", ""},
    {"HueDone2", kRefresh, "hue:code=9:always", 0, "HUE_DONE_2 from Hue\n", ""},
    {"DiscoveryFailed",
     {"hue", "discover"},
     "bridges:code:always",
     1,
     "HUE_FAILED\n",
     "the Hue server failed to do it."},
    {"Nest100", kLink, "nest:code=100:always", 1, "NEST_44 from Nest: status 0, value 0\n",
     "the Nest server gave the answer to another command: NEST_44 (the Nest server answered command 100)."},
    {"Nest100WithAnotherStatus", kLinkWithoutCode, "nest:code=100:always", 1, "NEST_44 from Nest: status -1, value 0\n",
     "the Nest server gave the answer to another command: NEST_44 (the Nest server answered command 100)."},
    {"Nest121", kLink, "nest:code=121:always", 0, "NEST_41 from Nest\n",
     "every user of this machine can see the code on the command line; \"nest link -\" asks for it instead."},
    {"Nest122", kUnlink, "nest:code=122:always", 0, "NEST_43 from Nest\n", ""},
    {"Nest122ToALink", kLink, "nest:code=122:always", 1, "NEST_43 from Nest\n",
     "the Nest server gave the answer to another command: NEST_43 (the Nest server answered command 122)."},
    {"Nest123", kUnlink, "nest:code=123:always", 1, "NEST_42 from Nest\n",
     "the Nest server gave the answer to another command: NEST_42 (the Nest server answered command 123)."},
    {"Nest124Done", kUnlink, "nest:code=124:always", 0, "NEST_45 from Nest\n", ""},
    {"Nest124Failed", kLinkWithoutCode, "nest:code=124:always", 1, "NEST_46 from Nest\n",
     "the Nest server failed to do it; for a link the authorisation code may be wrong."},
    {"NestUnknown", kLink, "nest:code=130:always", 1, "",
     "no answer that the library knows came from the Nest server."},
};

class ServerAnswerTest : public testing::TestWithParam<ServerAnswer> {
 protected:
  static Ended runAs(const std::string& role) {
    std::vector<std::string> arguments = GetParam().arguments;
    arguments.insert(arguments.end(), {"--role", role});
    return runAssoc(arguments);
  }

  static void expectAnswer(const Ended& ended) {
    EXPECT_EQ(ended.status, GetParam().status);
    EXPECT_NE(ended.output.find(GetParam().event), std::string::npos) << ended.output;
    const std::string sentence = GetParam().sentence;
    EXPECT_EQ(ended.sentence(), sentence.empty() ? "" : "tembra-assoc: " + sentence);
  }
};

TEST_P(ServerAnswerTest, IsToldAndClosesTheWebServersConnectionOnly) {
  SimRouter router({"--fault", GetParam().fault});
  const Ended lcd = runAs("lcd");
  expectAnswer(lcd);
  EXPECT_EQ(lcd.output.find(kClosed), std::string::npos) << lcd.output;
  const Ended web = runAs("web");
  expectAnswer(web);
  EXPECT_NE(web.output.find(kClosed), std::string::npos) << web.output;
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
  EXPECT_EQ(ended.output, std::string(kClosed) + "\n");
  EXPECT_EQ(ended.sentence(), "tembra-assoc: no answer that the library knows came from the Hue server.");
  router.stop();
}

struct NoAnswer {
  const char* name;
  std::vector<std::string> arguments;
  const char* fault;
  const char* begins;
  const char* server;
  const char* commandType;
};

void PrintTo(const NoAnswer& row, std::ostream* out) { *out << row.name; }

const NoAnswer kNoAnswers[] = {
    {"HueIsSilent", kRefresh, "hue:lost", "refresh bridge", "the Hue server", "RefreshIPDevice"},
    {"HueAnswersWithAnUnknownType", kRefresh, "hue:code=7", "refresh bridge", "the Hue server", "RefreshIPDevice"},
    {"NestIsSilent", kUnlink, "nest:lost", "unlink the account", "the Nest server", "RemoveIPDevice"},
};

class NoAnswerTest : public testing::TestWithParam<NoAnswer> {};

TEST_P(NoAnswerTest, EndsByTheLibrarysTimeOut) {
  SimRouter router({"--fault", GetParam().fault});
  std::vector<std::string> arguments = GetParam().arguments;
  arguments.emplace_back("--json");
  const Ended ended = runAssoc(arguments, Clock::kFast);
  EXPECT_EQ(ended.status, 1);
  EXPECT_EQ(ended.sentence(),
            std::string("tembra-assoc: no answer that the library knows came from ") + GetParam().server + " in time.");
  const auto event = nlohmann::json::parse(ended.output);
  EXPECT_EQ(event.at("event"), "TIMEOUT");
  EXPECT_EQ(event.at("report").at("CommandType"), GetParam().commandType);
  router.stop();
}

TEST_P(NoAnswerTest, MayBeLeftByCtrlC) {
  SimRouter router({"--fault", GetParam().fault});
  Program program(assocCommand(GetParam().arguments));
  router.waitFor(GetParam().begins);
  program.signal(SIGINT);
  const Ended ended = program.end();
  EXPECT_EQ(ended.status, 130);
  EXPECT_EQ(ended.errors, std::string("tembra-assoc: ") + GetParam().server +
                              " cannot be told to stop and may still do it.\ntembra-assoc: interrupted.\n");
  const Told told = router.stop();
  EXPECT_EQ(told.zigbee.size() + told.zwave.size(), 0U) << "the radios have nothing to do with it";
}

INSTANTIATE_TEST_SUITE_P(HueAndNest, NoAnswerTest, testing::ValuesIn(kNoAnswers),
                         [](const auto& test) { return test.param.name; });

}  // namespace
}  // namespace tembra::test
