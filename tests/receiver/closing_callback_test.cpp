// The connection closed, or closed and opened again, under the step of the receive loop that called the front end.
#include <thread>

#include "callback_stage.h"
#include "occurrences.h"

using harness::Device;
using harness::lines;
using harness::Node;

TEST_F(Callback, MayClose) {
  inCallback([this] { assoc.closeAssocConnection(); });
  router.watch(harness::kWatchConnection);
  assoc.addDevZigbeeZwave();
  router.zwave().send(Node(5));
  const std::string trace = router.takeTrace();
  EXPECT_NE(trace.find(lines(
                {"event 3 source 2", "log 0 libTembraAssoc:closing the Assoc Connection", "shutdown 2", "close"})),
            std::string::npos)
      << trace;
  EXPECT_TRUE(endsWithExit(trace)) << trace;
  EXPECT_EQ(assoc_meshID, -1);
  router.forget();
  router.advance(1000);
  EXPECT_EQ(router.takeTrace(), "");
}

TEST_F(Callback, MayCloseWhenAnOperationTimedOut) {
  inCallback([this] { assoc.closeAssocConnection(); });
  assoc.addDevZigbeeZwave();
  router.advance(180);
  EXPECT_EQ(router.takeEvents().size(), 1U);
  EXPECT_TRUE(endsWithExit(router.takeTrace()));
}

// The new connection is the new thread's: of the old one's step nothing is left but its last line.
class Reopening : public Callback {
 protected:
  void reopenInCallback() {
    inCallback([this] {
      assoc.closeAssocConnection();
      EXPECT_EQ(assoc.checkAssocConnection(), 0);
    });
  }

  /// One connection, one thread: an answer is handled once, by another thread than before.
  void expectOneNewReceiver(std::thread::id before) {
    router.forget();
    assoc.assocState = ASSOC;
    router.zwave().send(Node(5));
    EXPECT_EQ(occurrences(router.takeTrace(), "Received Packet from Z-wave"), 1U);
    const auto events = router.takeEvents();
    ASSERT_EQ(events.size(), 1U);
    EXPECT_NE(events[0].thread, before);
  }
};

TEST_F(Reopening, TheOldFlowWritesNothingIntoTheNewConnection) {
  router.database().put(Device(12, "Lamp").zwave(6));
  const struct {
    int state;
    Node node;
    int code;
    int stateInCallback;
  } kRows[] = {
      {ASSOC, Node(255), EVENT_ADD_FAILED, ASSOC},
      {ASSOC, Node(5), EVENT_ADDING, ZW_ASSOC},
      {ZW_ASSOC, Node(6), EVENT_ALREADY_ADDED, ZW_ASSOC},
      {ZW_ASSOC, Node(255), EVENT_ADD_FAILED, ZW_ASSOC},
      {ZW_ASSOC, Node(5), EVENT_GETTING_INFO, ZW_ASSOC_QUERY},
      {ZW_ASSOC_QUERY, Node(5).basic(0), EVENT_ADD_FAILED, ZW_ASSOC_QUERY},
      {ZW_ASSOC_QUERY, Node(5).generic(0x10), EVENT_SELECT_TYPE, ZW_ASSOC_QUERY},
      {ZW_ASSOC_QUERY, Node(5).generic(0x02), EVENT_CREATED, ZW_ASSOC_QUERY},
      {DEASSOC, Node(0), EVENT_REMOVED_UNKNOWN, DEASSOC},
      {DEASSOC, Node(6), EVENT_REMOVED, ZW_REMOVING},
      {DEASSOC, Node(5), EVENT_REMOVED_UNKNOWN, DEASSOC},
  };
  for (const auto& row : kRows) {
    assoc.assocState = row.state;
    idle = 0;
    router.watch(harness::kWatchTimeouts);
    reopenInCallback();
    router.zwave().send(row.node);
    const auto events = router.takeEvents();
    ASSERT_EQ(events.size(), 1U);
    EXPECT_EQ(events[0].event.code, row.code);
    EXPECT_EQ(assoc.assocState, row.stateInCallback);
    EXPECT_EQ(idle, 1);
    EXPECT_EQ(assoc.cancelTarget, 0);
    EXPECT_STREQ(cmdtype, "");
    const std::string trace = router.takeTrace();
    const std::string after = trace.substr(trace.find(kEntered));
    EXPECT_EQ(occurrences(after, "\n"), 4U) << after;  // entered, created, the new wait, and the old thread's end
    EXPECT_EQ(occurrences(after, kExited), 1U) << after;
    EXPECT_EQ(occurrences(after, "timeout 180\n"), 1U) << after;
    expectOneNewReceiver(events[0].thread);
    router.forget();
  }
}

TEST_F(Reopening, ATimeOutWritesNothingIntoTheNewConnection) {
  assoc.addDevZigbeeZwave();
  inCallback([this] {
    assoc.closeAssocConnection();
    EXPECT_EQ(assoc.checkAssocConnection(), 0);
    assoc.removeDevZigbeeZwave();
  });
  router.advance(180);
  EXPECT_EQ(router.state(), "state 2 idle 0 last 0 cancel 3 radio 0 cmdtype RemoveDevice");
  expectOneNewReceiver(router.takeEvents().at(0).thread);
}

TEST_F(Reopening, ManyTimesInOneCallbackLeavesOneReceiver) {
  inCallback([this] {
    for (int i = 0; i < 20; ++i) {
      assoc.closeAssocConnection();
      EXPECT_EQ(assoc.checkAssocConnection(), 0);
    }
  });
  assoc.assocState = ASSOC;
  router.zwave().send(Node(5));
  const auto events = router.takeEvents();
  ASSERT_EQ(events.size(), 1U);
  const std::string trace = router.takeTrace();
  EXPECT_EQ(occurrences(trace, kEntered), 20U);
  EXPECT_EQ(occurrences(trace, kExited), 20U);
  expectOneNewReceiver(events[0].thread);
}
