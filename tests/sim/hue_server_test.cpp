// What the Hue server answers, and what it has the HA server store.
#include <gtest/gtest.h>
#include <tembra/association.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <string>
#include <thread>

#include "support/caller.h"
#include "support/running_sim.h"
#include "tembra/vocabulary.h"

namespace tembra::sim::test {
namespace {

constexpr const char* kBridge = "02a1b2fffe0c0001";
constexpr const char* kSecondBridge = "02a1b2fffe0c0002";
enum : unsigned { kAddBridge = 100, kAddBulb = 105, kRefresh = 106, kRemove = 109, kDiscover = 114 };

class HueServerTest : public testing::Test {
 protected:
  // Result type of the answer.
  int answerTo(unsigned command, const char* bridge, const char* argument = "") {
    caller.hue(command, bridge, argument);
    return hear().type;
  }
  HueAnswer hear() {
    const Heard heard = caller.hear();
    EXPECT_EQ(heard.length, sizeof(HueAnswer));
    return heard.as<HueAnswer>();
  }
  void add(const char* bridge) {
    sim.tell("press hue-button");
    EXPECT_EQ(answerTo(kAddBridge, bridge), 2);
  }

  Caller caller;
  RunningSim sim{{"--bridges", "2"}};
};

TEST_F(HueServerTest, DiscoveryNamesEveryBridge) {
  for (const int count : {0, 1, 25, 30, 50}) {
    sim.tell("bridges " + std::to_string(count));
    caller.hue(kDiscover);
    const HueAnswer answer = hear();
    EXPECT_EQ(answer.type, 0);
    EXPECT_EQ(answer.count, count);
    std::set<std::string> ids;
    for (int i = 0; i < count; ++i) ids.insert(nlohmann::json::parse(answer.entries[i].json).at("id"));
    EXPECT_EQ(ids.size(), static_cast<std::size_t>(count));
  }
  EXPECT_EQ(sim.stop(), 0);
}

TEST_F(HueServerTest, AnEntryIsAnObjectOfIdAndAddress) {
  caller.hue(kDiscover);
  const HueAnswer answer = hear();
  EXPECT_STREQ(answer.entries[0].json, R"({"id":"02a1b2fffe0c0001","internalipaddress":"192.168.1.101"})");
  EXPECT_STREQ(answer.entries[1].json, R"({"id":"02a1b2fffe0c0002","internalipaddress":"192.168.1.102"})");
  EXPECT_STREQ(answer.entries[2].json, "");
}

TEST_F(HueServerTest, AnAddWaitsForTheLinkButton) {
  caller.hue(kAddBridge, kBridge);
  EXPECT_NE(sim.ask("status").text.find("Hue server: waiting for the link button"), std::string::npos);
  EXPECT_TRUE(caller.heardSoFar().empty());
  sim.tell("press hue-button");
  EXPECT_EQ(hear().type, 2);
}

TEST(HueServerPatience, AnAddGivesUpWhenNobodyPresses) {
  Caller caller;
  RunningSim sim({"--speed", "100"});
  caller.hue(kAddBridge, kBridge);
  EXPECT_EQ(caller.hear().as<HueAnswer>().type, 4);
  EXPECT_EQ(kDatabase.keySet(), (std::set<std::string>{"NextDevid", "Version"}));
  EXPECT_EQ(sim.stop(), 0);
}

TEST_F(HueServerTest, ALinkButtonMayBePressedBeforeTheAdd) {
  sim.tell("press hue-button");
  EXPECT_EQ(answerTo(kAddBridge, kBridge), 2);
}

TEST(HueServerPatience, ALinkButtonDoesNotCountForEver) {
  Caller caller;
  const RunningSim sim({"--speed", "1000"});
  sim.tell("press hue-button");
  std::this_thread::sleep_for(std::chrono::milliseconds(40));  // 40 simulated seconds
  caller.hue(kAddBridge, kBridge);
  EXPECT_EQ(caller.hear().as<HueAnswer>().type, 4);
}

TEST_F(HueServerTest, WithoutBridgesThereIsNoLinkButton) {
  sim.tell("bridges 0");
  EXPECT_EQ(sim.ask("press hue-button").text, "there is no Hue bridge");
}

TEST_F(HueServerTest, WhatHasNotBeenAddedIsNotFound) {
  EXPECT_EQ(answerTo(kAddBridge, "001122fffe334455"), 3);
  EXPECT_EQ(answerTo(kAddBulb, kBridge, "Lamp"), 5);
  EXPECT_EQ(answerTo(kRefresh, kBridge, "user"), 5);
  EXPECT_EQ(answerTo(kRemove, kBridge), 5);
}

TEST_F(HueServerTest, AnAddedBridgeTakesEveryCommand) {
  add("02A1B2fffe0C0001");
  EXPECT_EQ(answerTo(kAddBridge, kBridge), 2);
  EXPECT_EQ(answerTo(kAddBulb, kBridge, "Lamp"), 6);
  EXPECT_EQ(answerTo(kAddBulb, kBridge, ""), 1);
  EXPECT_EQ(answerTo(kRefresh, kBridge, "user"), 8);
  EXPECT_EQ(answerTo(kRemove, kBridge), 9);
  EXPECT_EQ(answerTo(kRefresh, kBridge, "user"), 5);
  EXPECT_EQ(sim.stop(), 0);
}

TEST_F(HueServerTest, ALampIsStoredWithItsBridgeAndUser) {
  add(kBridge);
  answerTo(kAddBulb, kBridge, "Desk");
  EXPECT_EQ(kDatabase.keySet(), (std::set<std::string>{"NextDevid", "Version", "1", "1.1", "1.9", "2", "2.1", "2.9"}));
  const auto record = kDatabase.record<DeviceRecord>("2");
  EXPECT_STREQ(record.name, "Desk");
  EXPECT_EQ(record.radioKind, RADIO_IP);
  EXPECT_STREQ(record.typeName, "HueLamp");
  EXPECT_STREQ(kDatabase.record<IndexRecord>("2.1").value, kBridge);
  EXPECT_STREQ(kDatabase.record<IndexRecord>("2.9").value, "user-02a1b2fffe0c0001");
}

TEST_F(HueServerTest, RemovingABridgeDropsItsLampsOnly) {
  add(kBridge);
  add(kSecondBridge);
  answerTo(kAddBulb, kBridge, "Desk");
  EXPECT_EQ(answerTo(kRemove, kBridge), 9);
  EXPECT_EQ(kDatabase.keySet(), (std::set<std::string>{"NextDevid", "Version", "2", "2.1", "2.9"}));
}

std::string bridgesKnownToTheLibrary() {
  char* const json = TembraAssociation::LCDAssocInit()->Hue_getBridgeList();
  std::string text = json;
  std::free(json);
  return text;
}

TEST_F(HueServerTest, TheLibraryListsTheAddedBridges) {
  EXPECT_EQ(bridgesKnownToTheLibrary(), R"({"MAClist":[]})");
  add(kSecondBridge);
  EXPECT_EQ(bridgesKnownToTheLibrary(),
            R"({"MAClist":[{"mac":"02:a1:b2:0c:00:02","username":"user-02a1b2fffe0c0002"}]})");
  answerTo(kRemove, kSecondBridge);
  EXPECT_EQ(bridgesKnownToTheLibrary(), R"({"MAClist":[]})");
}

TEST_F(HueServerTest, ACommandReplacesTheWaitForTheLinkButton) {
  caller.hue(kAddBridge, kBridge);
  EXPECT_EQ(answerTo(kDiscover, ""), 0);
  sim.tell("press hue-button");
  sim.awaitIdle();
  EXPECT_TRUE(caller.heardSoFar().empty());
}

TEST_F(HueServerTest, SaysEveryTypeOnDemand) {
  for (const char* type : {"0", "1", "2", "3", "4", "5", "6", "7", "8", "9", "10", "-1", "2147483647"}) {
    sim.tell(std::string("answer hue ") + type);
    EXPECT_EQ(std::to_string(hear().type), type);
  }
  for (const char* count : {"-1", "26", "2147483647"}) {
    sim.tell(std::string("answer hue 0 ") + count);
    EXPECT_EQ(std::to_string(hear().count), count);
  }
  for (const char* demand : {"answer hue", "answer hue x", "answer hue 1 x", "answer hue 1 2 3"}) {
    EXPECT_FALSE(sim.ask(demand).done) << demand;
  }
}

TEST_F(HueServerTest, WhatIsSaidOnDemandReplacesTheAnswerThatIsDue) {
  caller.hue(kAddBridge, kBridge);
  EXPECT_NE(sim.ask("status").text.find("waiting"), std::string::npos);
  sim.tell("answer hue 4");
  EXPECT_EQ(hear().type, 4);
  sim.tell("press hue-button");
  sim.awaitIdle();
  EXPECT_TRUE(caller.heardSoFar().empty());
}

TEST_F(HueServerTest, FaultsDistortItsAnswers) {
  sim.tell("fault bridges:code=7");
  EXPECT_EQ(answerTo(kDiscover, ""), 7);
  sim.tell("fault hue:code");
  EXPECT_EQ(answerTo(kRemove, kBridge), 1);
  sim.tell("fault hue:short=4");
  caller.hue(kRemove, kBridge);
  EXPECT_EQ(caller.hear().length, 4U);
  sim.tell("fault hue:lost");
  caller.hue(kRemove, kBridge);
  sim.awaitIdle();
  EXPECT_TRUE(caller.heardSoFar().empty());
}

TEST(HueServerRestart, AnAddedBridgeIsStillKnown) {
  Caller caller;
  {
    RunningSim sim;
    sim.tell("press hue-button");
    caller.hue(kAddBridge, kBridge);
    EXPECT_EQ(caller.hear().as<HueAnswer>().type, 2);
    EXPECT_EQ(sim.stop(), 0);
  }
  const RunningSim again;
  caller.hue(kRefresh, kBridge, "user");
  EXPECT_EQ(caller.hear().as<HueAnswer>().type, 8);
}

TEST(HueServerDatabase, AFailureIsTroubleAndAFailedResult) {
  Caller caller;
  RunningSim sim;
  std::filesystem::remove(kit::kDatabasePath);
  std::filesystem::create_directory(kit::kDatabasePath);
  caller.hue(kRefresh, kBridge, "user");
  EXPECT_EQ(caller.hear().as<HueAnswer>().type, 1);
  EXPECT_EQ(sim.stop(), 1);
  EXPECT_NE(sim.program().errors().find("the database /tmp/ddb cannot be opened"), std::string::npos);
}

}  // namespace
}  // namespace tembra::sim::test
