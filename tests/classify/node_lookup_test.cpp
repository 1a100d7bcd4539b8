// Is the received node a known device: which records count, and what is remembered of them.
#include <depot.h>
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "kit/router.h"

using kit::Bytes;
using kit::Call;
using kit::Device;
using kit::lines;
using kit::Router;

namespace {

int lookUp(Router& router, unsigned char node) {
  TembraAssociation& assoc = router.assoc();
  assoc.zwNodeRx.nodeId = node;
  std::memset(assoc.removedName, '-', sizeof assoc.removedName);
  assoc.removedId = -99;
  router.forget();
  return assoc.ZW_checkNodeExists();
}

std::string removedText(const TembraAssociation& assoc) {
  return {assoc.removedName, strnlen(assoc.removedName, sizeof assoc.removedName)};
}

const std::string kNothingRemembered(180, '-');

}  // namespace

TEST(NodeLookupTest, AKnownNodeIsRememberedAndSaid) {
  Router router;
  router.database().nextId("4").put(Device(3, "Lamp").zwave(5));
  EXPECT_EQ(lookUp(router, 5), 1);
  EXPECT_EQ(router.takeTrace(), lines({"log 0 libTembraAssoc:Removing Zwave device 5"}));
  EXPECT_EQ(router.assoc().removedId, 3);
  std::string expected(180, '-');
  expected.replace(0, 5, "Lamp\0", 5);
  EXPECT_EQ(std::string(router.assoc().removedName, 180), expected);
}

TEST(NodeLookupTest, AnUnknownNodeLeavesEverythingAsItWas) {
  Router router;
  router.database().nextId("4").put(Device(3, "Lamp").zwave(5));
  EXPECT_EQ(lookUp(router, 6), 0);
  EXPECT_EQ(router.takeTrace(), "");
  EXPECT_EQ(router.assoc().removedId, -99);
  EXPECT_EQ(std::string(router.assoc().removedName, 180), kNothingRemembered);
}

TEST(NodeLookupTest, OnlyRecordsOfTheZwaveRadioWithTheNodesLowByteCount) {
  const struct {
    int radioKind;
    unsigned storedNode;
    unsigned char node;
    int found;
    const char* said;
  } rows[] = {
      {2, 5, 5, 1, "5"},     {2, 261, 5, 1, "261"},   {2, 0x7FFFFF05, 5, 1, "2147483397"},
      {2, 6, 5, 0, ""},      {2, 0x0500, 5, 0, ""},   {2, 0, 0, 1, "0"},
      {2, 256, 0, 1, "256"}, {2, 255, 255, 1, "255"}, {0, 5, 5, 0, ""},
      {1, 5, 5, 0, ""},      {3, 5, 5, 0, ""},        {-2, 5, 5, 0, ""},
      {258, 5, 5, 0, ""},
  };
  Router router;
  int checked = 0;
  for (const auto& row : rows) {
    Device device = Device(3, "Lamp").zwave(row.storedNode);
    device.record().radioKind = row.radioKind;
    router.database().put(device);
    EXPECT_EQ(lookUp(router, row.node), row.found) << checked;
    const std::string line = std::string("log 0 libTembraAssoc:Removing Zwave device ") + row.said + "\n";
    EXPECT_EQ(router.takeTrace(), row.found == 1 ? line : "") << checked;
    ++checked;
  }
  EXPECT_EQ(checked, 13);
}

TEST(NodeLookupTest, KeysThatAreNoDeviceIdsDoNotCount) {
  const struct {
    const char* key;
    int found;
  } rows[] = {
      {"NextDevid", 0}, {"Version", 0}, {"12.1", 0},      {"12.", 0},     {".", 0},  {".12", 0},
      {"1.2.3", 0},     {"12", 1},      {"NextDevId", 1}, {"version", 1}, {"-1", 1}, {"NextDevid ", 1},
  };
  Router router;
  int checked = 0;
  for (const auto& row : rows) {
    router.database().remove();
    router.database().put(row.key, Device(3, "Lamp").zwave(5).bytes());
    EXPECT_EQ(lookUp(router, 5), row.found) << row.key;
    ++checked;
  }
  EXPECT_EQ(checked, 12);
}

TEST(NodeLookupTest, TheIdIsTheRecordsAndNotTheKeys) {
  Router router;
  router.database().put("12", Device(-7, "Lamp").zwave(5).bytes());
  EXPECT_EQ(lookUp(router, 5), 1);
  EXPECT_EQ(router.assoc().removedId, -7);
}

TEST(NodeLookupTest, TheLastRecordInFileOrderWins) {
  Router router;
  router.database().put(Device(3, "First").zwave(5).cutTo(404)).put(Device(4, "Other").zwave(6));
  router.database().put(Device(9, "Second").zwave(261));
  ASSERT_EQ(router.database().keys(), (std::vector<std::string>{"3", "4", "9"}));
  EXPECT_EQ(lookUp(router, 5), 1);
  EXPECT_EQ(router.takeTrace(), lines({
                                    "log 0 libTembraAssoc:Removing Zwave device 5",
                                    "log 0 libTembraAssoc:Removing Zwave device 261",
                                }));
  EXPECT_EQ(router.assoc().removedId, 9);
  EXPECT_EQ(removedText(router.assoc()), "Second");

  router.database().put(Device(3, "First").zwave(5));  // it grew, and was moved to the end
  ASSERT_EQ(router.database().keys(), (std::vector<std::string>{"4", "9", "3"}));
  EXPECT_EQ(lookUp(router, 5), 1);
  EXPECT_EQ(router.assoc().removedId, 3);
  EXPECT_EQ(removedText(router.assoc()), "First");
}

TEST(NodeLookupTest, RecordsThatEndBeforeTheRadioKindNeverMatch) {
  Router router;
  int matches = 0;
  for (std::size_t length = 0; length <= 512; ++length) {
    router.database().put(Device(3, "Lamp").zwave(5).cutTo(length));
    const int found = lookUp(router, 5);
    EXPECT_EQ(found, length >= 404 ? 1 : 0) << length;
    EXPECT_EQ(router.assoc().removedId, found == 1 ? 3 : -99) << length;
    matches += found;
  }
  EXPECT_EQ(matches, 109);
}

TEST(NodeLookupTest, ShortRecordsDoNotPassForNodeZero) {
  Router router;
  for (std::size_t length = 0; length < 404; ++length) {
    router.database().put(Device(0, "").zwave(0).cutTo(length));
    EXPECT_EQ(lookUp(router, 0), 0) << length;
  }
}

TEST(NodeLookupTest, LongerValuesAreReadAsFarAsARecordGoes) {
  Router router;
  for (const std::size_t length : {513U, 600U, 5000U}) {
    Bytes value = Device(3, "Lamp").zwave(5).bytes();
    value.resize(length, 'x');
    router.database().put("3", value);
    EXPECT_EQ(lookUp(router, 5), 1) << length;
    EXPECT_EQ(removedText(router.assoc()), "Lamp") << length;
  }
}

TEST(NodeLookupTest, NamesAreCutAtTheEndOfTheirField) {
  Router router;
  for (std::size_t length = 0; length <= sizeof DeviceRecord::name; ++length) {
    const std::string name(length, 'n');
    router.database().put(Device(3, name).zwave(0x6E6E6E05));
    EXPECT_EQ(lookUp(router, 5), 1) << length;
    EXPECT_EQ(removedText(router.assoc()), name.substr(0, 179)) << length;
    EXPECT_EQ(router.assoc().removedId, 3) << length;
  }
}

// The name runs on into the fields behind it, as far as they hold no zero byte.
TEST(NodeLookupTest, ANameWithoutEndIsCutToo) {
  Router router;
  Device device(3, std::string(360, 'n'));
  device.zwave(0x6E6E6E05);
  device.record().zigbeeAddress = 0x6E6E6E6E;
  std::memset(device.record().at372, 'n', sizeof device.record().at372);
  std::memset(device.record().at404, 'n', sizeof device.record().at404);
  std::memset(device.record().typeName, 'n', sizeof device.record().typeName);
  router.database().put(device);
  EXPECT_EQ(lookUp(router, 5), 1);
  EXPECT_EQ(removedText(router.assoc()), std::string(179, 'n'));
  EXPECT_EQ(router.assoc().removedId, 3);
}

TEST(NodeLookupTest, ANameIsNoFormat) {
  Router router;
  router.database().put(Device(3, "100% %s %n %d").zwave(5));
  EXPECT_EQ(lookUp(router, 5), 1);
  EXPECT_EQ(removedText(router.assoc()), "100% %s %n %d");
}

TEST(NodeLookupTest, EveryValueIsFetchedWholeAndInFileOrder) {
  Router router;
  router.database().nextId("4").put("Version", std::string("1")).put(Device(3, "Lamp").zwave(5)).index(3, 1, "on");
  router.watch(kit::kWatchDatabase | kit::kWatchRecords);
  EXPECT_EQ(lookUp(router, 5), 1);
  EXPECT_EQ(router.takeTrace(), lines({
                                    "dpopen /tmp/ddb 6 -1",
                                    "dpiterinit",
                                    "dpiternext NextDevid",
                                    "dpget NextDevid length -1 from 0 most 512",
                                    "dpiternext Version",
                                    "dpget Version length -1 from 0 most 512",
                                    "dpiternext 3",
                                    "dpget 3 length -1 from 0 most 512",
                                    "log 0 libTembraAssoc:Removing Zwave device 5",
                                    "dpiternext 3.1",
                                    "dpget 3.1 length -1 from 0 most 512",
                                    "dpiternext at the end",
                                    "dpclose",
                                }));
}

TEST(NodeLookupTest, AFailedStartOfTheWalkIsToldAndTheWalkGoesOn) {
  Router router;
  router.database().create();
  router.watch(kit::kWatchDatabase | kit::kWatchRecords);
  router.fail(Call::kIterateDatabase, DP_EMISC);
  router.fail(Call::kCloseDatabase, DP_ECLOSE);
  EXPECT_EQ(lookUp(router, 5), 0);
  EXPECT_EQ(router.takeTrace(), lines({
                                    "dpopen /tmp/ddb 6 -1",
                                    "dpiterinit -> failed",
                                    "stderr dpiterinit: miscellaneous error",
                                    "dpiternext at the end",
                                    "dpclose -> failed",
                                    "stderr dpclose: close error",
                                }));
}

TEST(NodeLookupTest, NothingIsWrittenIntoTheDatabase) {
  Router router;
  router.database().nextId("4").put(Device(3, "Lamp").zwave(5));
  const Bytes before = router.database().file();
  lookUp(router, 5);
  EXPECT_EQ(router.database().file(), before);
}
