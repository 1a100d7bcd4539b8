// The list of known Hue bridges when a record is broken, memory is short, or two ask at once.
#include <gtest/gtest.h>

#include <cstdlib>
#include <thread>

#include "hue_devices.h"
#include "kit/memory.h"

using kit::lines;
using kit::Router;

namespace {

void putTwoLamps(Router& router) {
  router.database().nextId("3");
  putLamp(router.database(), 1, bridgeIdOf(1), "ann");
  putLamp(router.database(), 2, bridgeIdOf(2), "bob");
}

const std::string kBoth = listOf({{macOf(1), "ann"}, {macOf(2), "bob"}});

}  // namespace

TEST(BridgeListFaultsTest, ABrokenIndexRecordIsNoneAndEndsTheWalk) {
  Router router;
  TembraAssociation& assoc = router.assoc();
  putTwoLamps(router);
  router.database().breakRecord("1.9");
  EXPECT_EQ(bridgeListOf(assoc), listOf({{macOf(1), ""}}));
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
