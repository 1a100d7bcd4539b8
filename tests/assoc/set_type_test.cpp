// Confirming and changing the type of the device being added.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <thread>

#include "kit/router_test.h"

using kit::lines;

namespace {

using SetTypeTest = kit::ConnectedTest;

constexpr DevType kContact = DEVTYPE_CONTACT_SWITCH;  // 12

void expectReport(const kit::RecordedEvent& event, const char* name, int type) {
  DeviceReport expected{};
  std::strcpy(expected.name, name);
  std::strcpy(expected.location, "Default");
  expected.type = type;
  const DeviceReport report = event.report();
  EXPECT_EQ(std::memcmp(&report, &expected, sizeof expected), 0) << report.name << " type " << report.type;
  const auto* rest = event.event.payload + sizeof expected;
  EXPECT_TRUE(std::all_of(rest, std::end(event.event.payload), [](unsigned char byte) { return byte == 0; }));
}

}  // namespace

TEST_F(SetTypeTest, NamesTheDeviceByTypeAndId) {
  router.database().nextId("7");
  router.nameType(kContact, "Twelve");
  assoc.zwNodeWork.proposedType = 5;
  assoc.setDevType(kContact);
  EXPECT_EQ(router.takeTrace(), lines({"log 0 libTembraAssoc:inside setDevType", "event 7 source 0"}));
  EXPECT_STREQ(assoc.devName, "Twelve #7");
  EXPECT_STREQ(assoc.devLocation, "Default");
  EXPECT_STREQ(tempStr, "Twelve");
  EXPECT_EQ(DevId, 7);
  EXPECT_EQ(assoc.devType, 12);
  EXPECT_EQ(assoc.zbDevice.devType, 12);
  EXPECT_EQ(assoc.zwNodeWork.finalType, 12);
  EXPECT_EQ(assoc.zwNodeWork.proposedType, 5);
  EXPECT_EQ(assoc.classifiedType, 0);
}

TEST_F(SetTypeTest, SendsTheEventOnTheCallersThread) {
  router.database().nextId("7");
  router.nameType(kContact, "Twelve");
  std::strcpy(cmdtype, "SelectDeviceType");
  assoc.activeRadio = 2;
  assoc.setDevType(kContact);
  const auto events = router.takeEvents();
  ASSERT_EQ(events.size(), 1U);
  EXPECT_EQ(events[0].thread, std::this_thread::get_id());
  expectReport(events[0], "Twelve #7", 12);
  EXPECT_EQ(events[0].state, "state 0 idle 1 last 7 cancel 0 radio 2 cmdtype SelectDeviceType")
      << "the command text follows the callback";
  EXPECT_EQ(router.state(), "state 0 idle 1 last 7 cancel 0 radio 2 cmdtype EditNameLocation");
}

TEST_F(SetTypeTest, AGenericDeviceKeepsItsTypeAndGetsItsIndexesRewritten) {
  router.database().nextId("8");
  assoc.zwNodeWork.proposedType = DEVTYPE_GENERIC_DEVICE;
  constexpr ZwIndexEntry kBefore[] = {{14, 1}, {17, 2}, {1, 3}, {14, 4}, {17, 5}, {1, 6}};
  constexpr ZwIndexEntry kAfter[] = {{42, 1}, {20, 2}, {43, 3}, {14, 4}, {17, 5}, {1, 6}, {0, 0}};
  std::copy(std::begin(kBefore), std::end(kBefore), assoc.zwNodeWork.indexes);
  assoc.setDevType(DEVTYPE_MOTOR_CONTROL);
  EXPECT_EQ(router.takeTrace(), lines({
                                    "log 0 libTembraAssoc:inside setDevType",
                                    "log 0 libTembraAssoc:inside setDevType GenericDevice",
                                    "log 3 ChangeIndexType:: IndexType Found",
                                    "log 3 ChangeIndexType:: IndexType Found",
                                    "log 3 ChangeIndexType:: IndexType Found",
                                    "event 7 source 0",
                                }));
  EXPECT_EQ(std::memcmp(assoc.zwNodeWork.indexes, kAfter, sizeof kAfter), 0);
  EXPECT_STREQ(assoc.devName, "GenericDevice #8");
  EXPECT_EQ(assoc.zwNodeWork.finalType, 60);
  EXPECT_EQ(assoc.devType, 52);
  EXPECT_EQ(assoc.zbDevice.devType, 52);
  expectReport(router.takeEvents().at(0), "GenericDevice #8", 52);
}

TEST_F(SetTypeTest, ALongTypeNameIsCutAtTheField) {
  router.database().nextId("7");
  for (const std::size_t length : {0U, 31U, 170U, 175U, 176U, 178U, 179U, 180U, 400U}) {
    const std::string name(length, 'x');
    router.nameType(kContact, name);
    assoc.setDevType(kContact);
    const std::string whole = name.substr(0, 179) + " #7";
    EXPECT_EQ(assoc.devName, whole.substr(0, 179)) << length;
    EXPECT_STREQ(assoc.devLocation, "Default");
    expectReport(router.takeEvents().at(0), whole.substr(0, 179).c_str(), 12);
  }
}

TEST_F(SetTypeTest, TheCallbackMayCallEverything) {
  router.onEvent([this](AssocEvent*) {
    assoc.setDevName(const_cast<char*>("Mine"));
    std::thread([this] { assoc.setDevLocation(const_cast<char*>("Hall")); }).join();
  });
  assoc.setDevType(kContact);
  EXPECT_STREQ(assoc.devName, "Mine");
  EXPECT_STREQ(assoc.devLocation, "Hall");
}
