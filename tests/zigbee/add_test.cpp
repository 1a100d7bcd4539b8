// A ZigBee device is added: each answer of the radio, what the front end hears, and in which order.
#include <gtest/gtest.h>

#include <cstring>

#include "devices.h"
#include "kit/router_test.h"

using kit::lines;
using kit::Router;
using kit::ZigbeeDevice;

namespace {

using ZigbeeAddTest = kit::RouterTest;

ZigbeeDevice answer(int status) { return ZigbeeDevice(kLamp).status(status); }

TembraAssociation& adding(Router& router) {
  TembraAssociation& assoc = router.connect();
  router.database().nextId("41");
  assoc.addDevZigbeeZwave();
  router.forget();
  return assoc;
}

// Found, and being asked for its description.
TembraAssociation& describing(Router& router) {
  TembraAssociation& assoc = adding(router);
  router.zigbee().send(answer(1));
  router.zigbee().send(answer(6));
  router.forget();
  return assoc;
}

}  // namespace

TEST_F(ZigbeeAddTest, ADeviceIsFoundAskedAndCreated) {
  TembraAssociation& assoc = router.connect();
  router.database().nextId("41");
  assoc.addDevZigbeeZwave();
  router.zigbee().send(answer(1));
  router.zigbee().send(answer(6));
  router.zigbee().send(kContact);
  EXPECT_EQ(router.takeTrace(), lines({
                                    "log 0 libTembraAssoc:inside addDevZigbeeZwave",
                                    R"(send zigbee 320 "option button1" @180 "IAS")",
                                    "send zwave 236 op 1 cmd 1",
                                    "log 0 libTembraAssoc:Sending cancel command to zwave_server",
                                    "send zwave 236 op 4 cmd 0",
                                    "log 0 libTembraAssoc: Device got found (Zigbee)",
                                    "event 3 source 1",
                                    "log 0 libTembraAssoc:timeout set to 60 sec",
                                    "log 0 libTembraAssoc:Getting Sensor info (Zigbee)",
                                    "event 5 source 1",
                                    "log 0 libTembraAssoc:timeout set to 180 sec",
                                    "log 0 libTembraAssoc:collecting info of zigbee device",
                                    "log 0 libTembraAssoc:ias zone cluster",
                                    "log 0 libTembraAssoc:Manufacturer name received:",
                                    "log 0 libTembraAssoc:Device associated:ContactSwitch ",
                                    "log 0 libTembraAssoc:No. of clusters found:1 and indexes:3 zonetype:15",
                                    "event 7 source 1",
                                    "log 0 libTembraAssoc:Sensor got Associated 41 name ContactSwitch #41 (Zigbee)",
                                }));
  EXPECT_EQ(router.state(), "state 8 idle 0 last 7 cancel 1 radio 1 cmdtype EditNameLocation");
}

TEST_F(ZigbeeAddTest, WhatHoldsWhileTheFrontEndIsTold) {
  adding(router);
  const auto stateAt = [&](const ZigbeeDevice& device) {
    router.zigbee().send(device);
    return router.takeEvents().at(0).state;
  };
  EXPECT_EQ(stateAt(answer(1)), "state 1 idle 0 last 3 cancel 1 radio 1 cmdtype AddDevice");
  EXPECT_EQ(stateAt(answer(6)), "state 1 idle 0 last 5 cancel 1 radio 1 cmdtype AddingSensor");
  EXPECT_EQ(stateAt(kCie), "state 1 idle 0 last 6 cancel 1 radio 1 cmdtype GettingInfo");
  router.assoc().assocState = ASSOC;
  EXPECT_EQ(stateAt(kContact), "state 1 idle 0 last 7 cancel 1 radio 1 cmdtype SelectDeviceType");
  router.assoc().assocState = ASSOC;
  EXPECT_EQ(stateAt(answer(2)), "state 0 idle 0 last 0 cancel 1 radio 1 cmdtype EditNameLocation");
}

TEST_F(ZigbeeAddTest, ADeviceWithoutTypesToChooseFromIsNamed) {
  TembraAssociation& assoc = describing(router);
  assoc.devType = 5;
  std::strcpy(assoc.devLocation, "Attic");
  router.zigbee().send(kContact);
  const auto events = router.takeEvents();
  ASSERT_EQ(events.size(), 1U);
  DeviceReport expected{};
  std::strcpy(expected.name, "ContactSwitch #41");
  std::strcpy(expected.location, "Default");
  expected.type = 12;
  EXPECT_EQ(std::memcmp(events[0].event.payload, &expected, sizeof expected), 0) << "all else is zero";
  EXPECT_STREQ(assoc.devName, "ContactSwitch #41");
  EXPECT_STREQ(assoc.devLocation, "Default");
  EXPECT_EQ(assoc.devType, 12);
  EXPECT_EQ(assoc.classifiedType, 12);
}

TEST_F(ZigbeeAddTest, TheChoiceGoesByTheZoneAndNotByTheFinalType) {
  TembraAssociation& assoc = describing(router);
  router.zigbee().send(answer(10).cluster(0x0006));
  EXPECT_EQ(router.takeEvents().at(0).event.code, 7) << "no zone, no choice";
  EXPECT_EQ(assoc.devType, 1);
  assoc.assocState = ASSOC;
  router.zigbee().send(answer(10).zone(0x0000).clusters({0x0500, 0x0006}));
  const auto events = router.takeEvents();
  ASSERT_EQ(events.size(), 1U);
  EXPECT_EQ(events[0].event.code, 6);
  EXPECT_EQ(events[0].report().type, 1);
  EXPECT_EQ(events[0].report().subTypes[0], 21);
}

TEST_F(ZigbeeAddTest, TheFirstEntryOfAListIsNoCount) {
  describing(router);
  router.numberType("GasSensor", 60);
  SensorBinaryFlag = 1;
  router.zigbee().send(answer(10).zone(0x002B).cluster(0x0500));
  const DeviceReport report = router.takeEvents().at(0).report();
  EXPECT_EQ((std::vector<int>{report.subTypes, report.subTypes + 7}), (std::vector<int>{39, 11, 37, 36, 55, 42, 0}));
}

TEST_F(ZigbeeAddTest, WhatTheCallbackChoosesIsKept) {
  TembraAssociation& assoc = describing(router);
  router.onEvent([&](AssocEvent*) {
    assoc.devType = 0x113;
    DevId = 99;
    std::strcpy(assoc.devName, "100%s");
  });
  router.zigbee().send(kCie);
  EXPECT_EQ(assoc.zbDevice.devType, 0x13) << "the low byte of the pending type";
  const std::string trace = router.takeTrace();
  EXPECT_EQ(trace.substr(trace.rfind("log ")), "log 0 libTembraAssoc:Sensor got Associated 99 name 100%s (Zigbee)\n");
}

TEST_F(ZigbeeAddTest, ADeviceThatCannotBeCreatedIsOnlyLogged) {
  TembraAssociation& assoc = describing(router);
  router.zigbee().send(kMeterWithoutValues);
  EXPECT_EQ(router.takeTrace(), lines({
                                    "log 0 libTembraAssoc:collecting info of zigbee device",
                                    "log 0 libTembraAssoc:Sensor got Associated 41 name BinarySwitch #41 (Zigbee)",
                                }));
  EXPECT_EQ(router.state(), "state 8 idle 0 last 5 cancel 1 radio 1 cmdtype GettingInfo");
  EXPECT_STREQ(assoc.devName, "BinarySwitch #41");
  router.advance(180);
  const auto events = router.takeEvents();
  ASSERT_EQ(events.size(), 1U) << "the time-out ends it";
  EXPECT_EQ(events[0].timeout().lastEventCode, 5);
}

TEST_F(ZigbeeAddTest, TheFinishedDeviceIsHandedOver) {
  TembraAssociation& assoc = describing(router);
  router.zigbee().send(kCie);
  assoc.setDevType(DEVTYPE_KEY_FOB);
  EXPECT_EQ(router.takeEvents().back().event.source, 1);
  char location[] = "Hall";
  assoc.setDevLocation(location);
  ZbDeviceInfo expected = assoc.zbDevice;
  expected.msgCode = 10;
  expected.devType = 19;
  std::strcpy(expected.name, "KeyFob #41");
  std::strcpy(expected.location, "Hall");
  router.forget();
  EXPECT_EQ(assoc.addingDone(), 0);
  HaNotice notice{};
  std::memcpy(notice.record, &expected, sizeof expected);
  const auto* bytes = reinterpret_cast<const unsigned char*>(&notice);
  EXPECT_EQ(router.takeSends().at(0).bytes, kit::Bytes(bytes, bytes + sizeof notice));
  EXPECT_EQ(std::memcmp(&assoc.zbDevice, &expected, sizeof expected), 0);
  EXPECT_EQ(router.state(), "state 8 idle 1 last 7 cancel 1 radio 1 cmdtype EditNameLocation");
}

TEST_F(ZigbeeAddTest, TheZwaveServerTakesOverEvenFromAFoundDevice) {
  TembraAssociation& assoc = adding(router);
  router.zigbee().send(answer(1));
  EXPECT_EQ(router.state(), "state 1 idle 0 last 3 cancel 1 radio 1 cmdtype AddingSensor");
  router.zwave().send(kit::Node(5));
  EXPECT_EQ(router.state(), "state 4 idle 0 last 3 cancel 2 radio 2 cmdtype AddingSensor");
  router.forget();
  router.zigbee().send(answer(10));
  EXPECT_EQ(router.takeTrace(), "") << "what the ZigBee device goes on to say is ignored";
  EXPECT_EQ(assoc.zbDevice.msgCode, 10) << "but stored";
}
