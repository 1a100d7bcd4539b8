// Watching ends when it is told to, and not before.
#include <gtest/gtest.h>

#include <csignal>

#include "support/sim_router.h"
#include "support/udp_listener.h"

namespace tembra::test {
namespace {

constexpr char kClosedForRole[] = "The library has closed the connection, as it does for the web server.";

TEST(Watch, EndsByCtrlCAndCancelsNothing) {
  const ZigbeeListener zigbee;
  const UdpListener zwave("127.255.255.254", 8888);
  Program watch(assocCommand({"watch"}));
  watch.waitFor("Watching 127.255.255.4:8888 until Ctrl-C.");
  watch.signal(SIGINT);
  EXPECT_EQ(watch.end().status, 130);
  EXPECT_EQ(zigbee.takeCommand(), "");
  EXPECT_EQ(zwave.take(), std::nullopt);
}

TEST(Watch, HoldsTheConnection) {
  SimRouter router;
  Program watch(assocCommand({"watch", "--role", "cloud"}));
  watch.waitFor("Watching");
  EXPECT_EQ(runAssoc({"add"}).status, 3);
  watch.signal(SIGTERM);
  EXPECT_EQ(watch.end().status, 130);
  router.stop();
}

TEST(Watch, GoesOnAfterAHueAnswerAndANestAnswer) {
  SimRouter router;
  Program watch(assocCommand({"watch", "--role", "mesh"}));
  watch.waitFor("Watching");
  router.say({"hue", "2"});
  watch.waitFor("HUE_ADDED from Hue");
  router.say({"nest", "100", "3", "-7"});
  watch.waitFor("NEST_44 from Nest: status 3, value -7");
  router.say({"hue", "0"});
  watch.waitFor("HUE_BRIDGES from Hue: 1 bridge");
  watch.signal(SIGINT);
  EXPECT_EQ(watch.end().status, 130);
  router.stop();
}

TEST(Watch, EndsForTheWebServerAfterAHueAnswer) {
  SimRouter router;
  Program watch(assocCommand({"watch", "--role", "web"}));
  watch.waitFor("Watching");
  router.say({"hue", "0", "-1"});
  const Ended ended = watch.end();
  EXPECT_EQ(ended.status, 0);
  std::string told = "HUE_BRIDGES from Hue: 0 bridges\n";
  told.append(kClosedForRole);
  EXPECT_NE(ended.output.find(told), std::string::npos) << ended.output;
  router.stop();
}

struct ServerWord {
  const char* name;
  std::vector<std::string> answer;  // what the router says of its own accord
};

void PrintTo(const ServerWord& row, std::ostream* out) { *out << row.name; }

class WatchAsWebServer : public testing::TestWithParam<ServerWord> {};

// Some answers give no event, or one that does not say who sent it.
TEST_P(WatchAsWebServer, EndsWhenTheLibraryClosesTheConnection) {
  SimRouter router;
  Program watch(assocCommand({"watch", "--role", "web"}));
  watch.waitFor("Watching");
  router.say(GetParam().answer);
  watch.waitFor(kClosedForRole);
  EXPECT_EQ(watch.end().status, 0);
  router.stop();
}

INSTANTIATE_TEST_SUITE_P(Answers, WatchAsWebServer,
                         testing::Values(ServerWord{"HueAdded", {"hue", "1"}}, ServerWord{"HueUnknown", {"hue", "7"}},
                                         ServerWord{"NestUnknown", {"nest", "130"}}),
                         [](const auto& test) { return test.param.name; });

}  // namespace
}  // namespace tembra::test
