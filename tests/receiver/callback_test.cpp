// The front end's callback: missing, replaced, calling back.
#include <gtest/gtest.h>

#include <thread>

#include "callback_stage.h"

using kit::lines;
using kit::Node;

namespace {

int othersEvents = 0;
void countOthers(AssocEvent*) { ++othersEvents; }

}  // namespace

TEST_F(Callback, AnotherOneReplacesTheFirst) {
  assoc.registerAssocEventCB(&countOthers);
  assoc.assocState = ASSOC;
  router.zwave().send(Node(5));
  EXPECT_EQ(othersEvents, 1);
  EXPECT_TRUE(router.takeEvents().empty());
  router.registerCallback();
  router.zwave().send(Node(5));
  EXPECT_EQ(othersEvents, 1);
  EXPECT_EQ(router.takeEvents().size(), 1U);
}

TEST_F(Callback, MayReplaceItself) {
  inCallback([this] { assoc.registerAssocEventCB(nullptr); });
  assoc.assocState = ASSOC;
  router.zwave().send(Node(5));
  router.zwave().send(Node(5));
  EXPECT_EQ(router.takeEvents().size(), 1U);
  EXPECT_EQ(assoc.assocState, ZW_ASSOC_QUERY);
}

TEST_F(Callback, RunsOnTheReceiveThreadExceptForNaming) {
  assoc.assocState = ASSOC;
  router.zwave().send(Node(5));
  router.zwave().send(Node(5));
  assoc.setDevType(DEVTYPE_BINARY_SWITCH);
  const auto events = router.takeEvents();
  ASSERT_EQ(events.size(), 3U);
  EXPECT_NE(events[0].thread, std::this_thread::get_id());
  EXPECT_EQ(events[0].thread, events[1].thread);
  EXPECT_EQ(events[2].thread, std::this_thread::get_id());
}

TEST_F(Callback, MayWaitForAReset) {
  inCallback([this] { assoc.doResetFor(reset_both); });
  assoc.assocState = ASSOC;
  router.zwave().send(Node(5));
  EXPECT_EQ(assoc.assocState, ZW_ASSOC);
  router.advance(8);
  EXPECT_EQ(router.takeTrace().find("Adding sensor"), std::string::npos);
  router.advance(1);
  EXPECT_NE(router.takeTrace().find("Adding sensor"), std::string::npos);
}

// A reset in the callback holds nobody up who calls from elsewhere.
TEST_F(Callback, BlocksNoCallerWhileItWaits) {
  inCallback([this] { assoc.doResetFor(reset_zwave); });
  assoc.assocState = ASSOC;
  router.zwave().send(Node(5));
  router.forget();
  assoc.sendCancelTo(cancel_zwave);
  EXPECT_EQ(router.takeTrace(),
            lines({"log 0 libTembraAssoc:Sending cancel command to zwave_server", "send zwave 236 op 4 cmd 0"}));
  router.advance(7);
}

// A front end may wait in its callback for a thread of its own that is inside a call.
TEST_F(Callback, MayWaitForAnotherCaller) {
  inCallback([this] {
    std::thread([this] {
      char name[] = "from another thread";
      assoc.setDevName(name);
    }).join();
  });
  assoc.assocState = ASSOC;
  router.zwave().send(Node(5));
  EXPECT_STREQ(assoc.devName, "from another thread");
}

// What follows the callback is written all the same.
TEST_F(Callback, StartsNothingThatTheFlowWouldNotOverwrite) {
  inCallback([this] { assoc.addDevZigbeeZwave(); });
  assoc.assocState = ASSOC;
  router.zwave().send(Node(255));
  EXPECT_EQ(router.state(), "state 0 idle 1 last 0 cancel 3 radio 2 cmdtype AddDevice");
}
