// Closing the connection.
#include <fcntl.h>
#include <gtest/gtest.h>

#include <atomic>
#include <thread>

#include "kit/router_test.h"

using kit::lines;
using kit::Node;

namespace {

using ClosingTest = kit::RouterTest;

constexpr const char* kExited = "log 0 libTembraAssoc:exited receive thread\\n\n";

// The receive thread says good-bye while the closing thread goes on: its line may stand anywhere behind the first.
std::string withoutExit(std::string trace) {
  const auto at = trace.find(kExited);
  EXPECT_NE(at, std::string::npos) << trace;
  if (at != std::string::npos) trace.erase(at, std::string(kExited).size());
  EXPECT_EQ(trace.find(kExited), std::string::npos) << "said once";
  return trace;
}

}  // namespace

TEST_F(ClosingTest, StepsInOrder) {
  TembraAssociation& assoc = router.connect();
  const int sock = assoc.sock;
  assoc_meshID = 3;
  router.watch(kit::kWatchConnection);
  router.onLog([&assoc](const std::string& text) {
    if (text.find("closing") == std::string::npos) return;
    EXPECT_EQ(assoc.running, 1) << "the line is the first thing";
    EXPECT_EQ(assoc_meshID, 3);
    EXPECT_EQ(assoc.closeMark, 0);
  });
  router.close();
  EXPECT_EQ(withoutExit(router.takeTrace()),
            lines({"log 0 libTembraAssoc:closing the Assoc Connection", "shutdown 2", "close"}));
  EXPECT_EQ(assoc.running, 0);
  EXPECT_EQ(assoc_meshID, -1);
  EXPECT_EQ(assoc.closeMark, -1);
  EXPECT_EQ(assoc.sock, 0);
  EXPECT_EQ(fcntl(sock, F_GETFD), -1);
}

TEST_F(ClosingTest, AClosedConnectionLogsAndMarksAgain) {
  TembraAssociation& assoc = router.assoc();
  router.watch(kit::kWatchConnection);
  assoc_meshID = 3;
  router.close();
  EXPECT_EQ(router.takeTrace(), lines({"log 0 libTembraAssoc:closing the Assoc Connection"}));
  EXPECT_EQ(assoc.closeMark, -1);
  EXPECT_EQ(assoc_meshID, -1);
  EXPECT_EQ(assoc.running, 0);
}

TEST_F(ClosingTest, KeepsTheOperationAndThePendingDevice) {
  TembraAssociation& assoc = router.connect();
  assoc.addDevZigbeeZwave();
  router.zwave().send(Node(5));
  assoc.setDevName(const_cast<char*>("Lamp"));
  DevId = 9;
  const std::string state = router.state();
  router.close();
  EXPECT_EQ(router.state(), state);
  EXPECT_STREQ(assoc.devName, "Lamp");
  EXPECT_EQ(DevId, 9);
  EXPECT_EQ(assoc.zwNodeRx.nodeId, 5);
}

TEST_F(ClosingTest, OpenAgainItWorksAsBefore) {
  TembraAssociation& assoc = router.connect();
  for (int round = 0; round < 20; ++round) {
    router.close();
    ASSERT_EQ(router.open(), 0);
    assoc.addDevZigbeeZwave();
    router.zwave().send(Node(5));
    ASSERT_EQ(assoc.assocState, ZW_ASSOC);
    ASSERT_EQ(router.takeEvents().size(), 1U) << "one receive thread";
  }
}

TEST_F(ClosingTest, OpenAgainAnOldOperationGoesOn) {
  TembraAssociation& assoc = router.connect();
  assoc.addDevZigbeeZwave();
  router.close();
  ASSERT_EQ(router.open(), 0);
  router.zwave().send(Node(5));
  EXPECT_EQ(router.takeEvents().size(), 1U);
  EXPECT_EQ(assoc.assocState, ZW_ASSOC);
}

TEST_F(ClosingTest, FromTheCallbackItEndsTheThread) {
  TembraAssociation& assoc = router.connect();
  router.onEvent([&assoc](AssocEvent*) { assoc.closeAssocConnection(); });
  assoc.addDevZigbeeZwave();
  router.zwave().send(Node(5));
  EXPECT_EQ(assoc.sock, 0);
  EXPECT_EQ(router.takeEvents().size(), 1U);
  EXPECT_EQ(router.open(), 0);
}

TEST_F(ClosingTest, WhileACallbackRunsItDoesNotWaitForIt) {
  TembraAssociation& assoc = router.connect();
  static std::atomic<bool> entered{false};  // the callback outlives the test
  static std::atomic<bool> release{false};
  router.onEvent([](AssocEvent*) {
    entered = true;
    while (!release) std::this_thread::yield();
  });
  assoc.addDevZigbeeZwave();
  router.zwave().post(Node(5).bytes());
  while (!entered) std::this_thread::yield();
  assoc.closeAssocConnection();
  EXPECT_EQ(assoc.sock, 0);
  release = true;
}

TEST_F(ClosingTest, ByTwoThreadsAtOnceTheSocketIsClosedOnce) {
  TembraAssociation& assoc = router.connect();
  for (int round = 0; round < 20; ++round) {
    router.watch(kit::kWatchConnection);
    std::thread other([&assoc] { assoc.closeAssocConnection(); });
    assoc.closeAssocConnection();
    other.join();
    router.close();
    const std::string trace = router.takeTrace();
    const auto first = trace.find("\nclose\n");
    ASSERT_NE(first, std::string::npos);
    ASSERT_EQ(trace.find("\nclose\n", first + 1), std::string::npos) << trace;
    router.watch(0);
    ASSERT_EQ(router.open(), 0);
    router.forget();
  }
}
