// The front end's callback: missing, replaced, calling back.
#include <gtest/gtest.h>

#include <functional>
#include <thread>

#include "callback_stage.h"

using kit::Device;
using kit::lines;
using kit::Node;

namespace {

int othersEvents = 0;
void countOthers(AssocEvent*) { ++othersEvents; }

}  // namespace

TEST_F(Callback, WithoutOneEverythingElseHappens) {
  router.database().put(Device(12, "Lamp").zwave(6));
  assoc.registerAssocEventCB(nullptr);
  const struct {
    int state;
    Node node;
    std::string after;
  } kRows[] = {
      {ASSOC, Node(5), "state 4 idle 0 last 3 cancel 2 radio 2 cmdtype AddingSensor"},
      {ZW_ASSOC, Node(5), "state 5 idle 0 last 5 cancel 2 radio 2 cmdtype GettingInfo"},
      {ZW_ASSOC_QUERY, Node(5).generic(0x10), "state 0 idle 0 last 6 cancel 2 radio 2 cmdtype SelectDeviceType"},
      {ZW_ASSOC_QUERY, Node(5).generic(0x02), "state 0 idle 0 last 7 cancel 2 radio 2 cmdtype EditNameLocation"},
      {DEASSOC, Node(6), "state 6 idle 0 last 0 cancel 2 radio 2 cmdtype RemoveDevice"},
      {ZW_ASSOC, Node(0), "state 0 idle 1 last 0 cancel 2 radio 2 cmdtype RemoveDevice"},
  };
  for (const auto& row : kRows) {
    assoc.assocState = row.state;
    router.zwave().send(row.node);
    EXPECT_EQ(router.state(), row.after);
  }
  assoc.lastEventCode = EVENT_ADDING;
  idle = 0;
  router.advance(20);
  EXPECT_EQ(router.state(), "state 0 idle 1 last 0 cancel 0 radio 2 cmdtype RemoveDevice");
  EXPECT_TRUE(router.takeEvents().empty());
}

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

// Every operation returns, and the loop goes on afterwards.
TEST_F(Callback, MayCallEveryOperation) {
  char text[] = "text";
  unsigned char bytes[600] = {};
  DevType types[50] = {};
  char name[192] = {};
  const std::function<void()> kOperations[] = {
      [&] { assoc.addDevZigbeeZwave(); },
      [&] { assoc.removeDevZigbeeZwave(); },
      [&] { assoc.sendCancelTo(cancel_zigbee); },
      [&] { assoc.sendCancelTo(cancel_zwave); },
      [&] { assoc.sendCancelTo(cancel_both); },
      [&] { assoc.sendCancelTo(static_cast<cancel_type>(9)); },
      [&] { assoc.cmdToZigbee(zigbee_cmd_add); },
      [&] { assoc.cmdToZwave(zwave_cmd_add); },
      [&] { assoc.setDevType(DEVTYPE_BINARY_SWITCH); },
      [&] { assoc.setDevType2(DEVTYPE_BINARY_SWITCH); },
      [&] { assoc.setDevName(text); },
      [&] { assoc.setDevLocation(text); },
      [&] { assoc.GenericIndexType(DEVTYPE_BINARY_SWITCH); },
      [&] { assoc.ChangeIndexType(static_cast<IndexType>(1), static_cast<IndexType>(2)); },
      [&] { assoc.addingDone(); },
      [&] { assoc.ZW_checkNodeExists(); },
      [&] { assoc.ZW_createDeviceType(); },
      [&] { assoc.CommandExists(bytes, 1); },
      [&] { assoc.ZW_indexToEnum(bytes); },
      [&] { assoc.ZW_removeNode(); },
      [&] { assoc.removeAllDevices(); },
      [&] { assoc.calculateDevId(); },
      [&] { assoc.GetDeviceTypeInStringFormat(1); },
      [&] { assoc.validate_DeviceType(); },
      [&] { assoc.zb_createAnyDevice(); },
      [&] { assoc.zb_removeNode(1); },
      [&] { assoc.listSubDevType(DEVTYPE_BINARY_SWITCH, types); },
      [&] { assoc.ConnectToServers(); },
      [&] { assoc.sendToServers(SERVER_MESH, bytes); },
      [&] { assoc.findClientType(assoc.localAddr.sin_addr); },
      [&] { TembraAssociation::FreeUsr1AssocInit(); },
      [&] { getDefaultDevName(DEVTYPE_BINARY_SWITCH, 1, name); },
      [&] { GetMeshId(name); },
      [&] { assoc.registerAssocEventCB(assoc.eventCallback); },
      [&] { EXPECT_EQ(assoc.checkAssocConnection(), -1) << "it is open"; },
  };
  int called = 0;
  for (const auto& operation : kOperations) {
    assoc.assocState = ASSOC;
    inCallback([&] {
      operation();
      ++called;
    });
    router.zwave().send(Node(5));
    router.forget();
    assoc.assocState = ASSOC;
    router.zwave().send(Node(5));
    EXPECT_EQ(router.takeEvents().size(), 1U);
  }
  EXPECT_EQ(called, 35);
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
