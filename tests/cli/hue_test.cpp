// Hue bridges and bulbs: each command, from the word to the device list.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <ostream>

#include "kit/text.h"
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
            "Press the round link button on top of the Hue bridge.\n"
            "Added the Hue bridge 02:a1:b2:0c:00:01.\n");
  EXPECT_NE(runAssoc({"devices"}).output.find("1   Hue lamp  HueLamp  IP"), std::string::npos);
  router.stop();
}

TEST(Hue, BridgeIsNotAddedWhenNobodyPressesItsButton) {
  SimRouter router({"--speed", "100"});
  const Ended added = runAssoc({"hue", "add", kBridge, "--wait", "1"});
  EXPECT_EQ(added.status, 1);
  EXPECT_NE(added.sentence().find("The link button of the Hue bridge was not pressed in time."), std::string::npos)
      << added.errors;
  router.stop();
}

struct HueCase {
  const char* name;
  std::vector<std::string> arguments;
  std::string told;  ///< to the Hue server
  const char* says;
  const char* event;
};

void PrintTo(const HueCase& row, std::ostream* out) { *out << row.name; }

const HueCase kHueCases[] = {
    {"AddBulb",
     {"hue", "add-bulb", kBridge, "Kitchen"},
     "add a bulb of bridge 02a1b2fffe0c0001",
     "Added the bulb to the Hue bridge 02:a1:b2:0c:00:01.",
     "bulb-added"},
    {"Refresh",
     {"hue", "refresh", kBridge},
     "refresh bridge 02a1b2fffe0c0001",
     "Refreshed the Hue bridge 02:a1:b2:0c:00:01.",
     "ended"},
    {"RefreshWithAText",
     {"hue", "refresh", kBridge, std::string(49, 'u')},
     "refresh bridge 02a1b2fffe0c0001",
     "Refreshed the Hue bridge 02:a1:b2:0c:00:01.",
     "ended"},
    {"Remove",
     {"hue", "remove", "02:A1:B2:0C:00:01", "--yes"},
     "remove bridge 02a1b2fffe0c0001",
     "Removed the Hue bridge 02:A1:B2:0C:00:01.",
     "ended"},
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
  EXPECT_NE(done.output.find(std::string(R"("event":")") + GetParam().event + '"'), std::string::npos) << done.output;
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
  EXPECT_NE(runAssoc({"hue", "list", "--json"}).output.find(R"("bridges":[])"), std::string::npos);
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
    {"None", "0", 0, "Looking for Hue bridges.\n", "No Hue bridge was found.\n"},
    {"One", "1", 1, "Looking for Hue bridges.\n", "Found the Hue bridge 02:a1:b2:0c:00:01 at 192.168.1.101.\n"},
    {"Full", "25", 25, "Looking for Hue bridges.\n", "Found the Hue bridge 02:a1:b2:0c:00:19 at 192.168.1.125.\n"},
    {"TooMany", "30", 25, "Looking for Hue bridges.\n", "Found the Hue bridge 02:a1:b2:0c:00:19 at 192.168.1.125.\n"},
};

class DiscoveryTest : public testing::TestWithParam<Discovery> {};

TEST_P(DiscoveryTest, TellsTheBridges) {
  SimRouter router({"--bridges", GetParam().bridges});
  const Ended discovered = runAssoc({"hue", "discover"});
  EXPECT_EQ(discovered.status, 0) << discovered.errors;
  EXPECT_TRUE(discovered.output.starts_with(GetParam().firstLine)) << discovered.output;
  EXPECT_TRUE(discovered.output.ends_with(GetParam().lastLine)) << discovered.output;
  const auto event = nlohmann::json::parse(kit::linesOf(runAssoc({"hue", "discover", "--json"}).output).at(1));
  EXPECT_EQ(event.at("event"), "bridges");
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
  terminal.waitFor("Press the round link button on top of the Hue bridge (at most 60 s left)");
  router.waitFor("Hue server -> people   press the link button");
  pressLinkButton();
  terminal.waitFor("Added the Hue bridge 02:a1:b2:0c:00:01.");
  EXPECT_EQ(terminal.end(), 0);
  router.stop();
}

TEST(TerminalHue, AsksBeforeItRemovesABridge) {
  SimRouter router;
  Terminal terminal(assocCommand({"hue", "remove", kBridge}));
  terminal.waitFor("Remove the Hue bridge and its bulbs from the home and the device list?");
  terminal.type("n\r");
  terminal.waitFor("not confirmed, nothing was done.");
  EXPECT_EQ(terminal.end(), 1);
  ASSERT_EQ(addBridge(router).status, 0);
  Terminal again(assocCommand({"hue", "remove", kBridge}));
  again.waitFor("Yes or no [y/N]");
  again.type("y\r");
  again.waitFor("Removed the Hue bridge");
  EXPECT_EQ(again.end(), 0);
  router.stop();
}

TEST(TerminalHue, LeavesTheLiveLineBeforeItComplainsOfCtrlC) {
  SimRouter router({"--fault", "hue:lost"});
  Terminal terminal(assocCommand({"hue", "add", kBridge}));
  terminal.waitFor("Press the round link button");
  terminal.type("\x03");
  terminal.waitFor("tembra-assoc: Cancelled too late: ");
  EXPECT_EQ(terminal.end(), 130);
  const Told told = router.stop();
  EXPECT_EQ(told.zigbee.size() + told.zwave.size(), 0U) << "the radios have nothing to do with it";
}

TEST(Hue, FailsWhenAnotherFrontEndHasTheConnection) {
  const UdpListener server("127.255.255.252", 8888);
  const UdpListener otherFrontEnd("127.255.255.4", 8888);
  const Ended ended = runAssoc({"hue", "discover"});
  EXPECT_EQ(ended.status, 3);
  EXPECT_NE(ended.sentence().find("Another front end has the connection"), std::string::npos) << ended.errors;
  EXPECT_EQ(server.take(), std::nullopt);
}

TEST(Hue, FailsWithoutItsServer) {
  const Ended ended = runAssoc({"hue", "add", kBridge});
  EXPECT_EQ(ended.status, 3);
  EXPECT_NE(ended.sentence().find("The Hue server does not run on this router."), std::string::npos) << ended.errors;
}

}  // namespace
}  // namespace tembra::test
