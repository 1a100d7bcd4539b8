// A device that has joined gets its number and its first name before it is classified.
#include <gtest/gtest.h>

#include <cstring>

#include "classified.h"
#include "kit/router_test.h"

using kit::lines;
using kit::Router;
using kit::ZigbeeDevice;

namespace {

using CreationTest = kit::RouterTest;

constexpr char kCollecting[] = "log 0 libTembraAssoc:collecting info of zigbee device";

TembraAssociation& holding(Router& router, const ZigbeeDevice& device) {
  TembraAssociation& assoc = router.assoc();
  assoc.zbDevice = device.info();
  router.forget();
  return assoc;
}

}  // namespace

TEST_F(CreationTest, TheNumberComesFromTheDatabaseAndTheNameFromTheRules) {
  router.database().nextId("41");
  TembraAssociation& assoc = holding(router, ZigbeeDevice().cluster(0x0006));
  std::string firstName;
  router.onLog([&](const std::string& line) {
    if (line == "libTembraAssoc:collecting info of zigbee device") firstName = assoc.devName;
  });
  EXPECT_EQ(assoc.zb_createAnyDevice(), 0);
  EXPECT_EQ(DevId, 41);
  EXPECT_EQ(firstName, "UnknownDevice #41");
  EXPECT_STREQ(assoc.devName, "BinarySwitch #41");
  EXPECT_EQ(router.takeTrace(), lines({kCollecting}) + summary(1, 1, "0"));
}

TEST_F(CreationTest, TheFirstNameStaysWhereNoRuleNames) {
  router.database().nextId("41");
  ZigbeeDevice device = ZigbeeDevice().clusters({0x0020, 0x0406});
  device.info().devType = 5;
  TembraAssociation& assoc = holding(router, device);
  EXPECT_EQ(assoc.zb_createAnyDevice(), 0);
  EXPECT_STREQ(assoc.devName, "UnknownDevice #41");
  EXPECT_EQ(assoc.zbDevice.devType, 5);
}

TEST_F(CreationTest, AFailedClassificationIsTheResult) {
  router.database().nextId("41");
  TembraAssociation& assoc = holding(router, ZigbeeDevice().clusters({0x0006, 0x0B04}));
  EXPECT_EQ(assoc.zb_createAnyDevice(), -1);
  EXPECT_STREQ(assoc.devName, "BinarySwitch #41");
}

TEST_F(CreationTest, WithoutANumberInTheDatabaseTheLastOneIsKept) {
  router.database().create();
  TembraAssociation& assoc = holding(router, ZigbeeDevice().cluster(0x0006));
  DevId = 9;
  EXPECT_EQ(assoc.zb_createAnyDevice(), 0);
  EXPECT_STREQ(assoc.devName, "BinarySwitch #9");
}

TEST_F(CreationTest, WithoutADatabaseTheNumberIsMinusOne) {
  router.database().makeUnopenable();
  TembraAssociation& assoc = holding(router, ZigbeeDevice().cluster(0x0006));
  DevId = 9;
  EXPECT_EQ(assoc.zb_createAnyDevice(), 0);
  EXPECT_EQ(DevId, -1);
  EXPECT_STREQ(assoc.devName, "BinarySwitch #-1");
  EXPECT_EQ(router.takeTrace(), lines({"stderr dpopen: broken database file", kCollecting}) + summary(1, 1, "0"));
}

TEST_F(CreationTest, OfTheNodeBlockOnlyTheKindOfDeviceIsWritten) {
  TembraAssociation& assoc = holding(router, ZigbeeDevice().cluster(0x0006));
  std::memset(&assoc.zwNodeWork, 0xA5, sizeof assoc.zwNodeWork);
  ZwNodeInfo expected = assoc.zwNodeWork;
  expected.deviceKind = DEVICE_ZIGBEE;
  const ZwNodeInfo received = assoc.zwNodeRx;
  assoc.zb_createAnyDevice();
  EXPECT_EQ(std::memcmp(&assoc.zwNodeWork, &expected, sizeof expected), 0);
  EXPECT_EQ(std::memcmp(&assoc.zwNodeRx, &received, sizeof received), 0);
}

TEST_F(CreationTest, TheKindOfDeviceIsWrittenFirst) {
  TembraAssociation& assoc = holding(router, ZigbeeDevice());
  int kind = -1;
  router.onLog([&](const std::string&) { kind = kind < 0 ? assoc.zwNodeWork.deviceKind : kind; });
  assoc.zwNodeWork.deviceKind = DEVICE_ZWAVE;
  assoc.zb_createAnyDevice();
  EXPECT_EQ(kind, DEVICE_ZIGBEE);
}

TEST(SubTypesTest, OnlyOneZoneHasTypesToChooseFrom) {
  Router router;
  TembraAssociation& assoc = router.assoc();
  int choices = 0;
  for (unsigned zone = 0; zone <= 0xFFFF; ++zone) {
    const char* name = assoc.GetDeviceTypeInStringFormat(static_cast<unsigned short>(zone));
    DevType types[50] = {};
    assoc.listSubDevType(StrToDevType(name), types);
    if (types[0] == 0) continue;
    ++choices;
    EXPECT_EQ(zone, 0U);
    EXPECT_EQ((std::vector<int>{types, types + 4}), (std::vector<int>{21, 19, 10, 0}));
  }
  EXPECT_EQ(choices, 1);
}
