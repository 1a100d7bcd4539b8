// The router's Logger is called with the service busy, and may itself be a front end.
#include "callback_stage.h"

using kit::Device;
using kit::lines;
using kit::Node;

using LoggerCalls = Callback;

TEST_F(LoggerCalls, TheServiceBack) {
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

TEST_F(LoggerCalls, Closing) {
  router.onLog([&](const std::string& line) {
    if (line == "libTembraAssoc:Received Packet from Z-wave") assoc.closeAssocConnection();
  });
  router.zwave().send(Node(5));
  const std::string trace = router.takeTrace();
  EXPECT_EQ(trace, lines({"log 0 libTembraAssoc:Received Packet from Z-wave",
                          "log 0 libTembraAssoc:closing the Assoc Connection",
                          "log 0 libTembraAssoc:exited receive thread\\n"}));
}

// The new thread's first line comes while the opener waits for that thread.
TEST_F(LoggerCalls, TheServiceBackFromTheNewThread) {
  assoc.closeAssocConnection();
  int called = 0;
  router.onLog([&](const std::string& line) {
    if (line != "libTembraAssoc:entered receive thread") return;
    EXPECT_EQ(TembraAssociation::getInstance(), &assoc);
    assoc.sendCancelTo(static_cast<cancel_type>(0));
    assoc.calculateDevId();
    ++called;
  });
  EXPECT_EQ(router.open(), 0);
  EXPECT_EQ(called, 1);
  assoc.addDevZigbeeZwave();
  router.forget();
  router.zwave().send(Node(5));
  EXPECT_EQ(router.takeEvents().at(0).event.code, EVENT_ADDING);
}

TEST_F(LoggerCalls, ClosingAndOpeningAgainFromTheNewThread) {
  assoc.closeAssocConnection();
  int started = 0;
  router.onLog([&](const std::string& line) {
    if (line != "libTembraAssoc:entered receive thread" || ++started > 1) return;
    assoc.closeAssocConnection();
    EXPECT_EQ(assoc.checkAssocConnection(), 0);
    assoc.addDevZigbeeZwave();
  });
  router.open();
  EXPECT_EQ(started, 2);
  EXPECT_EQ(assoc.running, 1);
  EXPECT_EQ(assoc.cancelTarget, cancel_both) << "the operation goes on";
  EXPECT_EQ(idle, 0);
  EXPECT_STREQ(cmdtype, "AddDevice");
  router.forget();
  router.zwave().send(Node(5));
  const auto events = router.takeEvents();
  ASSERT_EQ(events.size(), 1U) << "one thread serves the connection";
  EXPECT_EQ(events[0].event.code, EVENT_ADDING);
}

TEST_F(LoggerCalls, ClosingFromTheNewThread) {
  assoc.closeAssocConnection();
  router.onLog([&](const std::string& line) {
    if (line == "libTembraAssoc:entered receive thread") assoc.closeAssocConnection();
  });
  router.open();
  EXPECT_EQ(assoc.running, 0);
  EXPECT_EQ(assoc.sock, 0);
  router.onLog(nullptr);
  EXPECT_EQ(router.open(), 0);
  assoc.addDevZigbeeZwave();
  router.forget();
  router.zwave().send(Node(5));
  EXPECT_EQ(router.takeEvents().at(0).event.code, EVENT_ADDING);
}
