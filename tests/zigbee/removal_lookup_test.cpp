// Which device of the database a ZigBee address belongs to.
#include <gtest/gtest.h>

#include <cstring>

#include "kit/router.h"

using kit::Device;
using kit::Router;

namespace {

constexpr unsigned char kAsReceived = 77;
constexpr unsigned char kUnknownDevice = 12;
constexpr int kNobody = -77;

TembraAssociation& prepared(Router& router) {
  TembraAssociation& assoc = router.assoc();
  assoc.zbDevice.msgCode = kAsReceived;
  std::strcpy(assoc.removedName, "nobody");
  assoc.removedId = kNobody;
  router.forget();
  return assoc;
}

void expectFound(Router& router, unsigned short address, int id, const std::string& name) {
  TembraAssociation& assoc = prepared(router);
  EXPECT_EQ(assoc.zb_removeNode(address), 0);
  EXPECT_EQ(assoc.removedName, name);
  EXPECT_EQ(assoc.removedId, id);
  EXPECT_EQ(assoc.zbDevice.msgCode, kAsReceived);
}

void expectUnknown(Router& router, unsigned short address) {
  TembraAssociation& assoc = prepared(router);
  EXPECT_NE(assoc.zb_removeNode(address), 0);
  EXPECT_EQ(assoc.zbDevice.msgCode, kUnknownDevice);
  EXPECT_STREQ(assoc.removedName, "nobody");
  EXPECT_EQ(assoc.removedId, kNobody);
  EXPECT_EQ(router.takeTrace(), "");
}

std::string removing(const char* address) {
  return std::string("log 0 libTembraAssoc:Removing zigbee device ") + address + "\n";
}

}  // namespace

TEST(RemovalLookupTest, TheAddressFindsItsDevice) {
  Router router;
  router.database().put(Device(3, "Lamp").zigbee(0x1234)).put(Device(4, "Door").zigbee(0x1235));
  expectFound(router, 0x1235, 4, "Door");
  EXPECT_EQ(router.takeTrace(), removing("0x1235"));
  EXPECT_TRUE(router.takeSends().empty());
  expectUnknown(router, 0x3412);
}

TEST(RemovalLookupTest, AddressesAreToldWithTwoDigitsAtLeast) {
  Router router;
  router.database()
      .put(Device(1, "a").zigbee(0xABCD))
      .put(Device(2, "b").zigbee(0x5))
      .put(Device(3, "c").zigbee(0x100));
  expectFound(router, 0xABCD, 1, "a");
  expectFound(router, 0x5, 2, "b");
  EXPECT_EQ(router.takeTrace(), removing("0x05"));
  expectFound(router, 0x100, 3, "c");
  EXPECT_EQ(router.takeTrace(), removing("0x100"));
  expectFound(router, 0xABCD, 1, "a");
  EXPECT_EQ(router.takeTrace(), removing("0xabcd"));
}

TEST(RemovalLookupTest, AllThirtyTwoBitsOfTheStoredAddressCount) {
  Router router;
  router.database().put(Device(1, "far").zigbee(0x10005));
  expectUnknown(router, 5);
}

TEST(RemovalLookupTest, OfSeveralTheLastOneWins) {
  Router router;
  router.database()
      .put(Device(8, "first").zigbee(7))
      .put(Device(2, "second").zigbee(7))
      .put(Device(5, "third").zigbee(7));
  expectFound(router, 7, 5, "third");
  EXPECT_EQ(router.takeTrace(), removing("0x07") + removing("0x07") + removing("0x07"));
}

TEST(RemovalLookupTest, TheKindOfRadioIsNotAsked) {
  Router router;
  router.database().put(Device(1, "node").zwave(9)).put(Device(2, "bridge").ip());
  expectFound(router, 0, 2, "bridge");
  EXPECT_EQ(router.takeTrace(), removing("0x00") + removing("0x00"));
}

TEST(RemovalLookupTest, ARecordThatEndsBeforeItsAddressIsNobodys) {
  Router router;
  router.database().put(Device(1, "short").zigbee(0).cutTo(371));
  expectUnknown(router, 0);
  router.database().put(Device(1, "just enough").zigbee(0).cutTo(372));
  expectFound(router, 0, 1, "just enough");
  for (const std::size_t length : {0U, 1U, 4U, 5U, 100U, 368U}) {
    router.database().put(Device(1, "short").zigbee(0).cutTo(length));
    expectUnknown(router, 0);
  }
}

TEST(RemovalLookupTest, ABrokenRecordHidesWhatStandsBehind) {
  Router router;
  router.database().put(Device(1, "Broken").zigbee(8)).put(Device(2, "Hidden").zigbee(9)).breakRecord("1");
  TembraAssociation& assoc = prepared(router);
  EXPECT_NE(assoc.zb_removeNode(9), 0);
  EXPECT_EQ(assoc.zbDevice.msgCode, kUnknownDevice);
  EXPECT_STREQ(assoc.removedName, "nobody");
}
