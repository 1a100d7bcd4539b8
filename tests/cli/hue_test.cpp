// Hue bridges and bulbs: each command, from the word to the device list.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <ostream>

#include "support/sim_router.h"
#include "support/terminal.h"
#include "support/udp_listener.h"

namespace tembra::test {
namespace {

constexpr char kBridge[] = "02:a1:b2:0c:00:01";

void pressLinkButton() {
  const Ended pressed = Program({TEMBRA_SIM_PROGRAM, "press", "hue-button"}).end();
  EXPECT_EQ(pressed.status, 0) << pressed.errors;
}

Ended addBridge(SimRouter& router, std::vector<std::string> options = {}) {
  std::vector<std::string> command = {"hue", "add", kBridge};
  command.insert(command.end(), options.begin(), options.end());
  Program program(assocCommand(command));
  router.waitFor("Hue server -> people   press the link button");
  pressLinkButton();
  Ended added = program.end();
  router.waitFor("HA server -> database   device 1 stored");
  return added;
}

TEST(Hue, BridgeIsAddedWhenItsLinkButtonIsPressed) {
  SimRouter router;
  const Ended added = addBridge(router);
  EXPECT_EQ(added.status, 0) << added.errors;
  EXPECT_EQ(added.output,
            "The bridge lets nobody in before its link button is pressed, the round one on its top: press it now.\n"
            "HUE_ADDED from Hue\n"
            "Added the Hue bridge 02:a1:b2:0c:00:01.\n");
  EXPECT_NE(runAssoc({"devices"}).output.find("1   Hue lamp  HueLamp  IP"), std::string::npos);
  router.stop();
}

TEST(Hue, BridgeIsNotAddedWhenNobodyPressesItsButton) {
  SimRouter router({"--speed", "100"});
  const Ended added = runAssoc({"hue", "add", kBridge});
  EXPECT_EQ(added.status, 1);
  EXPECT_EQ(added.sentence(), "tembra-assoc: the link button of the Hue bridge was not pressed in time.");
  router.stop();
}

struct HueCase {
  const char* name;
  std::vector<std::string> arguments;
  std::string told;  ///< to the Hue server
  const char* says;
  const char* event;  ///< as JSON
};

void PrintTo(const HueCase& row, std::ostream* out) { *out << row.name; }

const HueCase kHueCases[] = {
    {"AddBulb",
     {"hue", "add-bulb", kBridge, "Kitchen"},
     "add a bulb of bridge 02a1b2fffe0c0001",
     "Added the bulb to the Hue bridge 02:a1:b2:0c:00:01.",
     R"({"event": "HUE_BULB_ADDED", "code": 29, "source": "Hue", "report": {"CommandType": "AddHueDevice",
         "MobileInternalIndex": "", "Success": "true", "Type": "HueBulb"}})"},
    {"Refresh",
     {"hue", "refresh", kBridge},
     "refresh bridge 02a1b2fffe0c0001",
     "Refreshed the Hue bridge 02:a1:b2:0c:00:01.",
     R"({"event": "HUE_DONE", "code": 22, "source": "Hue", "report": {"CommandType": "RefreshIPDevice",
         "MobileInternalIndex": "", "Success": "true", "Type": "HueHub"}})"},
    {"RefreshWithAText",
     {"hue", "refresh", kBridge, std::string(49, 'u')},
     "refresh bridge 02a1b2fffe0c0001",
     "Refreshed the Hue bridge 02:a1:b2:0c:00:01.",
     R"({"event": "HUE_DONE", "code": 22, "source": "Hue", "report": {"CommandType": "RefreshIPDevice",
         "MobileInternalIndex": "", "Success": "true", "Type": "HueHub"}})"},
    {"Remove",
     {"hue", "remove", "02:A1:B2:0C:00:01", "--yes"},
     "remove bridge 02a1b2fffe0c0001",
     "Removed the Hue bridge 02:A1:B2:0C:00:01.",
     R"({"event": "HUE_DONE_2", "code": 23, "source": "Hue", "report": {"CommandType": "RemoveIPDevice",
         "MobileInternalIndex": "", "Success": "true", "Type": "HueHub"}})"},
};

class HueCommandTest : public testing::TestWithParam<HueCase> {};

TEST_P(HueCommandTest, IsDoneInWords) {
  SimRouter router;
  ASSERT_EQ(addBridge(router).status, 0);
  const Ended done = runAssoc(GetParam().arguments);
  EXPECT_EQ(done.status, 0) << done.errors;
  EXPECT_NE(done.output.find(GetParam().says), std::string::npos) << done.output;
  router.waitFor("library -> Hue server   " + GetParam().told);
  router.stop();
}

TEST_P(HueCommandTest, IsDoneAsJson) {
  SimRouter router;
  ASSERT_EQ(addBridge(router).status, 0);
  std::vector<std::string> arguments = GetParam().arguments;
  arguments.emplace_back("--json");
  const Ended done = runAssoc(arguments);
  EXPECT_EQ(done.status, 0) << done.errors;
  EXPECT_EQ(nlohmann::json::parse(done.output), nlohmann::json::parse(GetParam().event));
  router.stop();
}

INSTANTIATE_TEST_SUITE_P(Commands, HueCommandTest, testing::ValuesIn(kHueCases),
                         [](const auto& test) { return test.param.name; });

TEST(Hue, RemovedBridgeIsInNoList) {
  SimRouter router;
  ASSERT_EQ(addBridge(router, {"--json"}).status, 0);
  EXPECT_EQ(runAssoc({"hue", "remove", kBridge, "--yes"}).status, 0);
  router.waitFor("HA server -> database   bridge 02a1b2fffe0c0001 dropped, 1 record(s)");
  EXPECT_EQ(runAssoc({"devices", "--json"}).output, "");
  EXPECT_EQ(runAssoc({"hue", "list", "--json"}).output, "{\"MAClist\":[]}\n");
  router.stop();
}

struct Discovery {
  const char* name;
  const char* bridges;  ///< in the home's network
  std::size_t found;
  const char* firstLine;
  const char* lastLine;
};

void PrintTo(const Discovery& row, std::ostream* out) { *out << row.name; }

// The library's list has room for 25.
const Discovery kDiscoveries[] = {
    {"None", "0", 0, "HUE_BRIDGES from Hue: 0 bridges\n", "No Hue bridge was found.\n"},
    {"One", "1", 1, "HUE_BRIDGES from Hue: 1 bridge\n", "Found the Hue bridge 02:a1:b2:0c:00:01 at 192.168.1.101.\n"},
    {"Full", "25", 25, "HUE_BRIDGES from Hue: 25 bridges\n",
     "Found the Hue bridge 02:a1:b2:0c:00:19 at 192.168.1.125.\n"},
    {"TooMany", "30", 25, "HUE_BRIDGES from Hue: 25 bridges\n",
     "Found the Hue bridge 02:a1:b2:0c:00:19 at 192.168.1.125.\n"},
};

class DiscoveryTest : public testing::TestWithParam<Discovery> {};

TEST_P(DiscoveryTest, TellsTheBridges) {
  SimRouter router({"--bridges", GetParam().bridges});
  const Ended discovered = runAssoc({"hue", "discover"});
  EXPECT_EQ(discovered.status, 0) << discovered.errors;
  EXPECT_TRUE(discovered.output.starts_with(GetParam().firstLine)) << discovered.output;
  EXPECT_TRUE(discovered.output.ends_with(GetParam().lastLine)) << discovered.output;
  const auto event = nlohmann::json::parse(runAssoc({"hue", "discover", "--json"}).output);
  EXPECT_EQ(event.at("event"), "HUE_BRIDGES");
  ASSERT_EQ(event.at("bridges").size(), GetParam().found);
  if (GetParam().found > 0) {
    EXPECT_EQ(event.at("bridges")[0],
              nlohmann::json::parse(R"({"mac": "02:a1:b2:0c:00:01", "address": "192.168.1.101"})"));
  }
  router.stop();
}

INSTANTIATE_TEST_SUITE_P(Bridges, DiscoveryTest, testing::ValuesIn(kDiscoveries),
                         [](const auto& test) { return test.param.name; });

TEST(TerminalHue, ShowsWhatToPressAndTheSecondsLeft) {
  SimRouter router;
  Terminal terminal(assocCommand({"hue", "add", kBridge}));
  terminal.waitFor("The bridge lets nobody in before its link button is pressed");
  terminal.waitFor("Press the round link button on top of the Hue bridge (at most 180 s left)");
  router.waitFor("Hue server -> people   press the link button");
  pressLinkButton();
  terminal.waitFor("HUE_ADDED from Hue");
  terminal.waitFor("Added the Hue bridge 02:a1:b2:0c:00:01.");
  EXPECT_EQ(terminal.end(), 0);
  router.stop();
}

TEST(TerminalHue, AsksBeforeItRemovesABridge) {
  SimRouter router;
  Terminal terminal(assocCommand({"hue", "remove", kBridge}));
  terminal.waitFor("The Hue bridge and its bulbs leave the home and the device list. Go on? [y/N] ");
  terminal.type("n\r");
  terminal.waitFor("not confirmed, nothing was done.");
  EXPECT_EQ(terminal.end(), 1);
  ASSERT_EQ(addBridge(router).status, 0);
  Terminal again(assocCommand({"hue", "remove", kBridge}));
  again.waitFor("Go on? [y/N] ");
  again.type("y\r");
  again.waitFor("Removed the Hue bridge");
  EXPECT_EQ(again.end(), 0);
  router.stop();
}

TEST(TerminalHue, LeavesTheLiveLineBeforeItComplainsOfCtrlC) {
  SimRouter router;
  Terminal terminal(assocCommand({"hue", "add", kBridge}));
  terminal.waitFor("Press the round link button");
  terminal.type("\x03");
  terminal.waitFor("\r\033[K");
  terminal.waitFor("tembra-assoc: the Hue server cannot be told to stop and may still do it.");
  EXPECT_EQ(terminal.end(), 130);
  const Told told = router.stop();
  EXPECT_EQ(told.zigbee.size() + told.zwave.size(), 0U) << "the radios have nothing to do with it";
}

TEST(Hue, FailsWhenAnotherFrontEndHasTheConnection) {
  const UdpListener server("127.255.255.252", 8888);
  const UdpListener otherFrontEnd("127.255.255.4", 8888);
  const Ended ended = runAssoc({"hue", "discover"});
  EXPECT_EQ(ended.status, 3);
  EXPECT_NE(ended.sentence().find("127.255.255.4:8888 is in use"), std::string::npos) << ended.errors;
  EXPECT_EQ(server.take(), std::nullopt);
}

TEST(Hue, FailsWithoutItsServer) {
  const Ended ended = runAssoc({"hue", "add", kBridge});
  EXPECT_EQ(ended.status, 3);
  EXPECT_EQ(ended.sentence(), "tembra-assoc: no connection: the Hue server (127.255.255.252:8888) is not running.");
}

}  // namespace
}  // namespace tembra::test
