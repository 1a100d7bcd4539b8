// The list of known Hue bridges when the database is broken, memory is short, or two ask at once.
#include <depot.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <thread>

#include "hue_devices.h"
#include "kit/memory.h"

using kit::Call;
using kit::lines;
using kit::Router;

namespace {

void putTwoLamps(Router& router) {
  router.database().nextId("3");
  putLamp(router.database(), 1, bridgeIdOf(1), "ann");
  putLamp(router.database(), 2, bridgeIdOf(2), "bob");
}

const std::string kBoth = listOf({{macOf(1), "ann"}, {macOf(2), "bob"}});
const std::string kFirst = listOf({{macOf(1), "ann"}});
const std::string kNone = listOf({});

}  // namespace

TEST(BridgeListFaultsTest, AMissingDatabaseIsCreatedEmpty) {
  Router router;
  EXPECT_FALSE(router.database().exists());
  EXPECT_EQ(bridgeListOf(router.assoc()), kNone);
  EXPECT_TRUE(router.database().exists());
}

TEST(BridgeListFaultsTest, ADatabaseThatCanBeRepairedIsListed) {
  Router router;
  putTwoLamps(router);
  router.database().makeRepairable();
  router.watch(kit::kWatchDatabase);
  TembraAssociation& assoc = router.assoc();
  router.forget();
  EXPECT_EQ(bridgeListOf(assoc), kBoth);
  EXPECT_EQ(router.takeTrace(), lines({"dpopen /tmp/ddb 6 -1 -> failed", "stderr dpopen: broken database file",
                                       "dprepair /tmp/ddb", "dpopen /tmp/ddb 70 1", "dpclose"}));
}

TEST(BridgeListFaultsTest, ADatabaseThatCannotBeOpenedIsDeleted) {
  Router router;
  TembraAssociation& assoc = router.assoc();
  putTwoLamps(router);
  std::strcpy(username1[0], "kept");
  router.database().makeUnopenable();
  router.watch(kit::kWatchDatabase);
  router.forget();
  EXPECT_EQ(bridgeListOf(assoc), "null");
  EXPECT_EQ(router.takeTrace(), lines({"dpopen /tmp/ddb 6 -1 -> failed", "stderr dpopen: broken database file",
                                       "dprepair /tmp/ddb -> failed", "dpopen /tmp/ddb 70 1 -> failed"}));
  EXPECT_FALSE(router.database().exists());
  EXPECT_STREQ(username1[0], "kept");
  EXPECT_EQ(bridgeListOf(assoc), kNone) << "then there is a new one";
}

TEST(BridgeListFaultsTest, AWalkThatCannotBeginIsPrintedOnly) {
  Router router;
  TembraAssociation& assoc = router.assoc();
  putTwoLamps(router);
  router.forget();
  router.fail(Call::IterateDatabase, DP_EREAD);
  EXPECT_EQ(bridgeListOf(assoc), kBoth) << "it is tried all the same";
  EXPECT_EQ(router.takeTrace(), lines({"stderr dpiterinit: read error"}));
}

TEST(BridgeListFaultsTest, AFailingCloseIsPrintedOnly) {
  Router router;
  TembraAssociation& assoc = router.assoc();
  putTwoLamps(router);
  router.forget();
  router.fail(Call::CloseDatabase, DP_ECLOSE);
  EXPECT_EQ(bridgeListOf(assoc), kBoth);
  EXPECT_EQ(router.takeTrace(), lines({"stderr dpclose: close error"}));
}

TEST(BridgeListFaultsTest, ABrokenRecordEndsTheWalk) {
  Router router;
  TembraAssociation& assoc = router.assoc();
  putTwoLamps(router);
  router.database().breakRecord("2");
  router.forget();
  EXPECT_EQ(bridgeListOf(assoc), kFirst);
  EXPECT_EQ(router.takeTrace(), lines({"stderr dpclose: with fatal error"}));
}

TEST(BridgeListFaultsTest, ABrokenIndexRecordIsNoneAndEndsTheWalk) {
  Router router;
  TembraAssociation& assoc = router.assoc();
  putTwoLamps(router);
  router.database().breakRecord("1.9");
  EXPECT_EQ(bridgeListOf(assoc), listOf({{macOf(1), ""}}));
}

TEST(BridgeListFaultsTest, KeysWithoutValuesAreAnEmptyList) {
  Router router;
  TembraAssociation& assoc = router.assoc();
  putTwoLamps(router);
  router.database().breakEveryValue();
  EXPECT_EQ(bridgeListOf(assoc), kNone);
}

TEST(BridgeListFaultsTest, WithoutMemoryThereIsNoList) {
  constexpr int kBridges = 7;
  Router router;
  TembraAssociation& assoc = router.assoc();
  for (int n = 1; n <= kBridges; ++n) putLamp(router.database(), n, bridgeIdOf(n), "user" + std::to_string(n));
  router.watch(kit::kWatchDatabase);
  router.forget();
  {
    const kit::FailingAllocation shortage(kBridges * 100 + 200);
    EXPECT_EQ(assoc.Hue_getBridgeList(), nullptr);
    EXPECT_EQ(shortage.strikes(), 1U);
  }
  EXPECT_EQ(router.takeTrace(), lines({"dpopen /tmp/ddb 6 -1", "dpclose"})) << "the database is closed all the same";
  EXPECT_NE(bridgeListOf(assoc), "null");
}

// The table of users is shared: the one who comes second waits for the whole of the first call.
TEST(BridgeListFaultsTest, TwoWhoAskAtOnceGetTheSameList) {
  constexpr int kRounds = 100;
  Router router;
  TembraAssociation& assoc = router.assoc();
  putTwoLamps(router);
  router.watch(kit::kWatchDatabase);
  router.forget();
  const auto ask = [&assoc] {
    for (int i = 0; i < kRounds; ++i) EXPECT_EQ(bridgeListOf(assoc), kBoth);
  };
  std::thread other(ask);
  ask();
  other.join();
  std::string inTurns;
  for (int i = 0; i < 2 * kRounds; ++i) inTurns += lines({"dpopen /tmp/ddb 6 -1", "dpclose"});
  EXPECT_EQ(router.takeTrace(), inTurns);
}
