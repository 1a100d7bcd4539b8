// The front end's callback: missing, replaced, calling back, closing the connection under the loop that called it.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <functional>

#include "harness/router.h"

using harness::Device;
using harness::lines;
using harness::Node;
using harness::Router;

namespace {

int othersEvents = 0;
void countOthers(AssocEvent*) { ++othersEvents; }

std::size_t count(const std::string& text, const std::string& part) {
  std::size_t found = 0;
  for (auto at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) ++found;
  return found;
}

const char* const kEntered = "log 0 libTembraAssoc:entered receive thread\n";
const char* const kExited = "log 0 libTembraAssoc:exited receive thread\\n\n";

class Callback : public testing::Test {
 protected:
  Router router;
  TembraAssociation& assoc = router.connect();

  /// Runs once, in the callback of the next event.
  void inCallback(std::function<void()> then) {
    router.onEvent([this, once = std::move(then)](AssocEvent*) {
      router.onEvent(nullptr);
      once();
    });
  }
};

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

// What follows the callback is written all the same.
TEST_F(Callback, StartsNothingThatTheFlowWouldNotOverwrite) {
  inCallback([this] { assoc.addDevZigbeeZwave(); });
  assoc.assocState = ASSOC;
  router.zwave().send(Node(255));
  EXPECT_EQ(router.state(), "state 0 idle 1 last 0 cancel 3 radio 2 cmdtype AddDevice");
}

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
  EXPECT_EQ(trace.substr(trace.size() - std::strlen(kExited)), kExited);
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
  const std::string trace = router.takeTrace();
  EXPECT_EQ(trace.substr(trace.size() - std::strlen(kExited)), kExited);
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
    EXPECT_EQ(count(router.takeTrace(), "Received Packet from Z-wave"), 1U);
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
    EXPECT_EQ(count(after, "\n"), 4U) << after;  // entered, created, the new wait, and the old thread's end
    EXPECT_EQ(count(after, kExited), 1U) << after;
    EXPECT_EQ(count(after, "timeout 180\n"), 1U) << after;
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
  EXPECT_EQ(count(trace, kEntered), 20U);
  EXPECT_EQ(count(trace, kExited), 20U);
  expectOneNewReceiver(events[0].thread);
}

// The router's Logger is called with the service busy, and may itself be a front end.
TEST_F(Callback, TheLoggerMayCallTheServiceBack) {
  router.database().put(Device(12, "Lamp").zwave(5)).nextId("17");
  int called = 0;
  router.onLog([&](const std::string& line) {
    if (line != "libTembraAssoc:Removing Zwave device 5") return;
    char name[] = "from the logger";
    assoc.setDevName(name);
    assoc.sendCancelTo(static_cast<cancel_type>(0));
    assoc.calculateDevId();
    assoc.ZW_checkNodeExists();
    ++called;
  });
  assoc.removeDevZigbeeZwave();
  router.zwave().send(Node(5));
  EXPECT_GE(called, 2);
  EXPECT_STREQ(assoc.devName, "from the logger");
  EXPECT_EQ(router.takeEvents().at(0).event.code, EVENT_REMOVED);
  EXPECT_EQ(router.database().records(), 2) << "the database is whole";
}

TEST_F(Callback, TheLoggerMayClose) {
  router.onLog([&](const std::string& line) {
    if (line == "libTembraAssoc:Received Packet from Z-wave") assoc.closeAssocConnection();
  });
  router.zwave().send(Node(5));
  const std::string trace = router.takeTrace();
  EXPECT_EQ(trace, lines({"log 0 libTembraAssoc:Received Packet from Z-wave",
                          "log 0 libTembraAssoc:closing the Assoc Connection",
                          "log 0 libTembraAssoc:exited receive thread\\n"}));
}
