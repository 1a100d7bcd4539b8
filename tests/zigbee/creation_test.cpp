// A device that has joined gets its number and its first name before it is classified.
#include <gtest/gtest.h>

#include <cstring>

#include "kit/router_test.h"

using kit::lines;
using kit::Router;
using kit::ZigbeeDevice;

namespace {

using CreationTest = kit::RouterTest;

constexpr char kCollecting[] = "log 0 libTembraAssoc:collecting info of zigbee device";
constexpr char kOneCluster[] = "log 0 libTembraAssoc:No. of clusters found:1 and indexes:1 zonetype:0";

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
  EXPECT_EQ(router.takeTrace(), lines({kCollecting, kOneCluster}));
}

TEST_F(CreationTest, AFailedClassificationIsTheResult) {
  TembraAssociation& assoc = holding(router, ZigbeeDevice().clusters({0x0006, 0x0B04}));
  EXPECT_EQ(assoc.zb_createAnyDevice(), -1);
}

TEST_F(CreationTest, WithoutADatabaseTheNumberIsMinusOne) {
  router.database().makeUnopenable();
  TembraAssociation& assoc = holding(router, ZigbeeDevice().cluster(0x0006));
  DevId = 9;
  EXPECT_EQ(assoc.zb_createAnyDevice(), 0);
  EXPECT_EQ(DevId, -1);
  EXPECT_STREQ(assoc.devName, "BinarySwitch #-1");
  EXPECT_EQ(router.takeTrace(), lines({"stderr dpopen: broken database file", kCollecting, kOneCluster}));
}

TEST_F(CreationTest, OfTheNodeBlockOnlyTheKindOfDeviceIsWrittenAndFirst) {
  TembraAssociation& assoc = holding(router, ZigbeeDevice().cluster(0x0006));
  std::memset(&assoc.zwNodeWork, 0xA5, sizeof assoc.zwNodeWork);
  ZwNodeInfo expected = assoc.zwNodeWork;
  expected.deviceKind = DEVICE_ZIGBEE;
  router.onLog([&](const std::string&) { EXPECT_EQ(assoc.zwNodeWork.deviceKind, DEVICE_ZIGBEE); });
  assoc.zb_createAnyDevice();
  EXPECT_EQ(std::memcmp(&assoc.zwNodeWork, &expected, sizeof expected), 0);
}
