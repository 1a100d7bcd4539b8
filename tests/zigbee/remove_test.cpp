// A ZigBee device is removed: who it was, who is told, and what an answer means that names nobody.
#include <gtest/gtest.h>

#include <cstring>

#include "devices.h"
#include "kit/router_test.h"

using kit::Bytes;
using kit::Device;
using kit::lines;
using kit::Router;
using kit::ZigbeeDevice;

namespace {

using ZigbeeRemoveTest = kit::RouterTest;

constexpr char kScanned[] = "log 0 libTembraAssoc:Removing zigbee device 0x1234";

TembraAssociation& removing(Router& router) {
  TembraAssociation& assoc = router.connect();
  router.database().put(Device(7, "Lamp").zigbee(kLamp));
  assoc.removeDevZigbeeZwave();
  router.forget();
  return assoc;
}

ZigbeeDevice leaveAnswer(int status, unsigned short address = kLamp) {
  ZigbeeDevice device = ZigbeeDevice(address).status(status).maker("m").cluster(0x0006, 9);
  std::memset(device.info().at242, 0x5A, sizeof device.info().at242);
  return device;
}

}  // namespace

TEST_F(ZigbeeRemoveTest, AKnownDeviceIsReportedAndTheHaServerTold) {
  removing(router);
  router.zigbee().send(leaveAnswer(2));
  EXPECT_EQ(router.takeTrace(), lines({
                                    kScanned,
                                    "log 0 libTembraAssoc:Sending cancel command to zwave_server",
                                    "send zwave 236 op 4 cmd 0",
                                    R"(send ha 4100 zigbee address 4660 message 2 type 0 name "" location "")",
                                    "log 0 libTembraAssoc:Sensor name Lamp is removed (Zigbee)",
                                    "event 11 source 1",
                                }));
  const auto events = router.takeEvents();
  EXPECT_STREQ(events.at(0).report().removedName, "Lamp");
  EXPECT_EQ(events.at(0).report().removedId, 7);
  EXPECT_EQ(events.at(0).state, "state 2 idle 0 last 0 cancel 3 radio 1 cmdtype RemoveDevice");
  EXPECT_EQ(router.state(), "state 0 idle 1 last 0 cancel 0 radio 1 cmdtype RemoveDevice");
}

TEST_F(ZigbeeRemoveTest, TheNoticeIsTheReceivedRecord) {
  removing(router);
  const ZigbeeDevice sent = leaveAnswer(2);
  router.zigbee().send(sent);
  HaNotice notice{};
  std::memcpy(notice.record, &sent.info(), sizeof sent.info());
  const auto* bytes = reinterpret_cast<const unsigned char*>(&notice);
  EXPECT_EQ(router.ha().receive(), Bytes(bytes, bytes + sizeof notice));
  EXPECT_TRUE(router.ha().receive().empty());
}

TEST_F(ZigbeeRemoveTest, AnUnknownDeviceThatLeftIsReported) {
  TembraAssociation& assoc = removing(router);
  for (const int status : {2, 12}) {
    assoc.removeDevZigbeeZwave();
    router.forget();
    router.zigbee().send(leaveAnswer(status, 0x4321));
    EXPECT_EQ(router.takeTrace(), lines({
                                      "log 0 libTembraAssoc:Sending cancel command to zwave_server",
                                      "send zwave 236 op 4 cmd 0",
                                      "log 0 libTembraAssoc:Unknown Sensor removed (Zigbee)",
                                      "event 12 source 1",
                                  }))
        << status;
    EXPECT_EQ(router.takeEvents().at(0).state, "state 2 idle 0 last 0 cancel 3 radio 1 cmdtype RemoveDevice");
    EXPECT_EQ(router.state(), "state 0 idle 1 last 0 cancel 0 radio 1 cmdtype RemoveDevice");
    EXPECT_EQ(assoc.zbDevice.msgCode, 12) << status;
  }
}

TEST_F(ZigbeeRemoveTest, AfterTheFirstEndTheRestIsIgnored) {
  removing(router);
  router.zigbee().send(leaveAnswer(2));
  router.forget();
  for (const int status : {2, 2, 12, 5}) router.zigbee().send(leaveAnswer(status));
  EXPECT_EQ(router.takeTrace(), "");
  EXPECT_EQ(router.assoc().zbDevice.msgCode, 5) << "the record is stored all the same";
}

TEST_F(ZigbeeRemoveTest, WithoutADatabaseTheLastRemovedDeviceIsNamedAgain) {
  TembraAssociation& assoc = removing(router);
  router.zigbee().send(leaveAnswer(2));
  assoc.removeDevZigbeeZwave();
  router.database().makeUnopenable();
  router.forget();
  router.zigbee().send(leaveAnswer(5, 0x4321));
  EXPECT_EQ(router.takeTrace(), lines({"stderr dpopen: broken database file"})) << "no answer, so no event";
  EXPECT_FALSE(router.database().exists());
  router.database().makeUnopenable();
  router.zigbee().send(leaveAnswer(2, 0x4321));
  const auto events = router.takeEvents();
  ASSERT_EQ(events.size(), 1U);
  EXPECT_EQ(events[0].event.code, 11);
  EXPECT_STREQ(events[0].report().removedName, "Lamp");
  EXPECT_EQ(events[0].report().removedId, 7);
}
