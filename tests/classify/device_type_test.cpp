// What classifying a node writes, says and leaves alone.
#include <gtest/gtest.h>
#include <tembra/globals.h>

#include <cstring>
#include <string>

#include "kit/router.h"
#include "node_agreement.h"

using classify::Outcome;
using kit::Node;
using kit::Router;
using oracle::Lines;

namespace {

Node meteringPlug() { return Node(5).classes({0x25, 0x32}).basic(4).generic(0x10).specific(1).values({{0x25, 0, 1}}); }

constexpr char kPlugSummary[] =
    "log 0 libTembraAssoc:Device Basic Type:0x04, Generic Type:0x10, Specific Type:0x01,Nodeid:5";

// A database that cannot be opened and is not there afterwards either.
void putDatabaseOutOfReach() { std::strcpy(DBName, "/tmp/no/d"); }

}  // namespace

TEST(DeviceTypeTest, ThePlugIsClassifiedStepByStep) {
  Router router;
  router.database().nextId("17");
  router.watch(kit::kWatchDatabase);
  const Outcome actual = classify::classifyBy(router.assoc(), meteringPlug().block(), classify::marked());
  EXPECT_EQ(actual.log, Lines({
                            "dpopen /tmp/ddb 6 -1",
                            "dpclose",
                            "log 0 node 5 Supported Command Classes:0x25 0x32 ",
                            "log 0 libTembraAssoc:cmd matched",
                            "log 0 libTembraAssoc:Generic:zw_Binary_Switch , Specific:BS_Binary_Power_Switch",
                            kPlugSummary,
                        }));
  EXPECT_EQ(actual.result, 1);
  EXPECT_EQ(actual.classifiedType, 45);
  EXPECT_EQ(actual.name, "MeterSwitch #17");
  EXPECT_EQ(DevId, 17);
}

TEST(DeviceTypeTest, OnlyTheNamedFieldsOfTheWorkingCopyAreWritten) {
  Router router;
  router.database().nextId("17");
  ZwNodeInfo expected = classify::marked().work;
  const unsigned char start[] = {5, 0x25, 0x32, 0};
  std::memcpy(&expected, start, sizeof start);
  expected.deviceKind = 2;
  expected.proposedType = 45;
  std::memcpy(expected.name, "MeterSwitch #17", sizeof "MeterSwitch #17");
  expected.requestMark = 255;
  const Outcome actual = classify::classifyBy(router.assoc(), meteringPlug().block(), classify::marked());
  EXPECT_EQ(std::memcmp(&actual.work, &expected, sizeof expected), 0);
}

TEST(DeviceTypeTest, TheRestOfTheServiceIsLeftAlone) {
  Router router;
  router.database().nextId("17");
  TembraAssociation& assoc = router.assoc();
  assoc.devType = 99;
  assoc.activeRadio = 3;
  assoc.removedId = 98;
  std::memset(assoc.devLocation, 'L', sizeof assoc.devLocation);
  const std::string location(sizeof assoc.devLocation, 'L');
  const std::string state = router.state();
  classify::classifyBy(assoc, meteringPlug().block(), classify::marked());
  EXPECT_EQ(assoc.devType, 99);
  EXPECT_EQ(assoc.removedId, 98);
  EXPECT_EQ(std::memcmp(assoc.devLocation, location.data(), location.size()), 0);
  EXPECT_EQ(router.state(), state);
}

TEST(DeviceTypeTest, EveryBasicClassButZeroWillDo) {
  Router router;
  router.database().nextId("17");
  int classified = 0;
  for (int basic = 0; basic < 256; ++basic) {
    const ZwNodeInfo node = meteringPlug().basic(static_cast<unsigned char>(basic)).block();
    const Outcome before = classify::marked();
    const Outcome actual = classify::classifyBy(router.assoc(), node, before);
    classify::expectSame(actual, oracle::readNode(node, before, 17), std::to_string(basic));
    classified += actual.result;
  }
  EXPECT_EQ(classified, 255);
}

TEST(DeviceTypeTest, WithoutADatabaseTheIdIsMinusOne) {
  Router router;
  putDatabaseOutOfReach();
  DevId = 4;
  const Outcome before = classify::marked();
  const ZwNodeInfo node = meteringPlug().block();
  Outcome expected = oracle::readNode(node, before, -1);
  expected.log.insert(expected.log.begin(), "stderr dpopen: open error");
  const Outcome actual = classify::classifyBy(router.assoc(), node, before);
  classify::expectSame(actual, expected, "no database");
  EXPECT_EQ(actual.name, "MeterSwitch #-1");
  EXPECT_EQ(DevId, -1);
}

namespace {

// The fields behind the two names begin with what they held.
bool fieldsBehindNamesAreWhole(const TembraAssociation& assoc) {
  return assoc.devLocation[0] == 'L' && assoc.zwNodeWork.location[0] == classify::marked().work.location[0];
}

}  // namespace

TEST(DeviceTypeTest, ATypeNameOfAnyLengthStaysInItsField) {
  Router router;
  router.database().nextId("17");
  TembraAssociation& assoc = router.assoc();
  assoc.devLocation[0] = 'L';
  for (std::size_t length = 0; length <= 400; ++length) {
    const std::string typeName(length, 'n');
    const std::string name = (typeName.substr(0, 179) + " #17").substr(0, 179);
    router.nameType(45, typeName);
    const Outcome actual = classify::classifyBy(assoc, meteringPlug().block(), classify::marked());
    ASSERT_EQ(actual.name, name);
    ASSERT_STREQ(actual.work.name, name.c_str());
    ASSERT_TRUE(fieldsBehindNamesAreWhole(assoc)) << length;
  }
}

TEST(DeviceTypeTest, ATypeNameIsNoFormat) {
  Router router;
  router.database().nextId("17");
  router.nameType(45, "100% %s %n");
  EXPECT_EQ(classify::classifyBy(router.assoc(), meteringPlug().block(), classify::marked()).name, "100% %s %n #17");
}
