// Records that no well-behaved server sends: everything stays within its field, and within the record.
#include <gtest/gtest.h>

#include <cstring>
#include <random>

#include "agreement.h"
#include "classified.h"
#include "kit/router_test.h"

using kit::Router;
using kit::ZigbeeDevice;

namespace {

using OddRecordsTest = kit::RouterTest;

ZigbeeDevice repeated(unsigned short cluster, int times) {
  ZigbeeDevice device;
  for (int i = 0; i < times; ++i) device.cluster(cluster);
  return device;
}

std::string filled(std::size_t size, const std::string& end) { return std::string(size - end.size(), 'x') + end; }

// The device as a whole agrees with the oracle, the rest of the service object is untouched.
void expectAgreement(Router& router, const ZbDeviceInfo& device) {
  Agreement agreement(router);
  agreement.check(device, 17);
  agreement.expectNothingElseTouched();
}

struct FullTable {
  const char* title;
  ZigbeeDevice device;
  int indexes;
  int lastEntry;  // type of entry `indexes`
  char nameAt1 = '*';
};

const FullTable kFullTables[] = {
    {"28 entries", repeated(0x0006, 28), 28, 1},
    {"29 entries", repeated(0x0006, 29), 29, 1},
    {"30 entries", repeated(0x0006, 30), 29, 1},
    {"150 entries", repeated(0x0201, 30), 29, 38},
    {"30 measurements", repeated(0x0B04, 30), 29, 86, 1},
    {"30 meters", repeated(0x0702, 30), 29, 108},
    {"30 zones", repeated(0x0500, 30).zone(0x0015), 29, 12},
    {"a camera in the last place", repeated(0x0006, 27).clusters({0x0500, 0x0503}), 29, 12},
    {"30 zones with a scan", repeated(0x0500, 30).zone(0x0015).model("SZ-PIR04N"), 29, 12},
};

}  // namespace

TEST_F(OddRecordsTest, EntriesBeyondTheTableAreDropped) {
  int checked = 0;
  for (const FullTable& row : kFullTables) {
    ZigbeeDevice device = row.device;
    std::memset(device.info().name, '*', sizeof device.info().name);
    const Classified found = classify(router, device);
    const ZbDeviceInfo& record = router.assoc().zbDevice;
    EXPECT_EQ(record.indexCount, row.indexes) << row.title;
    EXPECT_EQ(record.indexes[row.indexes - 1].type, row.lastEntry) << row.title;
    EXPECT_EQ(found.entries.substr(found.entries.size() - 4), " end") << row.title;
    EXPECT_EQ(record.name[0], row.indexes == 29 ? '\xFF' : '*') << "the end mark behind entry 29: " << row.title;
    EXPECT_EQ(record.name[1], row.nameAt1) << row.title;
    EXPECT_NE(found.log.find(" and indexes:" + std::to_string(row.indexes) + " "), std::string::npos) << row.title;
    expectAgreement(router, device.info());
    ++checked;
  }
  EXPECT_EQ(checked, 9);
}

namespace {

constexpr unsigned char kMeasured = 7;

struct Measurement {
  ZigbeeDevice before;
  std::size_t behind;  // offset of the first endpoint behind the table
  std::size_t count;   // endpoints behind the table
};

const Measurement kMeasurementsBehind[] = {
    {repeated(0x0006, 16), 379, 0},  {repeated(0x0006, 17), 379, 1},  {repeated(0x0006, 28), 379, 12},
    {repeated(0x0006, 29), 379, 13}, {repeated(0x0201, 10), 421, 12},
};

}  // namespace

TEST_F(OddRecordsTest, TheMeasurementsEndpointsRunOnBehindTheTableUpToTheRecordsEnd) {
  Agreement agreement(router);
  std::size_t checked = 0;
  for (const Measurement& row : kMeasurementsBehind) {
    ZigbeeDevice device = row.before;
    device.cluster(0x0B04, kMeasured);
    router.assoc().zbDevice = device.info();
    agreement.check(device.info(), 17);
    const auto* bytes = reinterpret_cast<const unsigned char*>(&router.assoc().zbDevice);
    for (std::size_t at = 379; at < sizeof(ZbDeviceInfo); at += 2) {
      const bool written = at >= row.behind && at < row.behind + 2 * row.count;
      EXPECT_EQ(bytes[at], written ? kMeasured : 0) << at;
    }
    ++checked;
  }
  EXPECT_EQ(checked, 5U);
  agreement.expectNothingElseTouched();
}

TEST_F(OddRecordsTest, ANameIsWrittenOverTheEndpointsBehindTheTable) {
  classify(router, repeated(0x0006, 29).cluster(0x0B04, kMeasured));
  char name[] = "abc";
  router.assoc().setDevName(name);
  router.assoc().addingDone();
  EXPECT_EQ(std::memcmp(router.assoc().zbDevice.name, "abc\0\0\7\0\7", 8), 0);
}

TEST_F(OddRecordsTest, AListWithoutEndMarkHasThirtyClusters) {
  const Classified found = classify(router, repeated(0x0006, 30).maker(std::string(80, '\x06')));
  EXPECT_NE(found.log.find("clusters found:30 and indexes:29 "), std::string::npos);
  EXPECT_EQ(found.type, 43);
}

TEST_F(OddRecordsTest, BehindTheLastClusterComesNone) {
  for (const char* behind : {"\x03\x05", "\x04\x05", "\xFF\xFF"}) {
    const auto device = repeated(0x0020, 29).cluster(0x0500).zone(0x000D).maker(behind);
    EXPECT_EQ(classify(router, device).name, "MotionSensor #17");
  }
  const auto camera = repeated(0x0020, 28).clusters({0x0500, 0x0503}).zone(0x000D);
  EXPECT_EQ(classify(router, camera).name, "ZigbeeCamImage #17");
}

TEST_F(OddRecordsTest, TextsThatFillTheirFieldEndThere) {
  ZigbeeDevice device = ZigbeeDevice().zone(0x0115).cluster(0x0500);
  device.maker(filled(80, "Dravotek Ltd.")).model(filled(22, "3014"));
  const Classified found = classify(router, device);
  EXPECT_EQ(found.name, "Tembra Tap #17");
  EXPECT_NE(found.log.find("received:" + filled(80, "Dravotek Ltd.") + "\n"), std::string::npos);
  EXPECT_EQ(classify(router, ZigbeeDevice().model(filled(22, "UPIC")).cluster(0x0201)).type, 65);
}

TEST_F(OddRecordsTest, NoTextIsFoundAcrossTheEndOfItsField) {
  ZigbeeDevice device = ZigbeeDevice().zone(0x0115).cluster(0x0500);
  device.maker(filled(80, "Dravotek Ltd")).info().devType = '.';
  EXPECT_EQ(classify(router, device).name, "KeyFob #17");
  device.model(filled(22, "RC_AC")).zone(0x010F).info().indexCount = 'E';
  EXPECT_EQ(classify(router, device).name, "RemoteControl #17");
  EXPECT_EQ(router.assoc().GetDeviceTypeInStringFormat(0x010F), std::string("RemoteControl"));
}

TEST_F(OddRecordsTest, WhatStandsBehindATextsEndIsNotRead) {
  ZigbeeDevice device = ZigbeeDevice().zone(0x0115).cluster(0x0500);
  std::memcpy(device.info().manufacturer, "a\0Dravotek Ltd.", 15);
  EXPECT_EQ(classify(router, device).name, "KeyFob #17");
}

namespace {

// Clusters whose decision depends on the type so far, and one without any.
constexpr unsigned short kDeciding[] = {0x0006, 0x0008, 0x0300, 0x0402, 0x0405, 0x0500, 0x0B04, 0x0020};

}  // namespace

TEST_F(OddRecordsTest, EveryReceivedTypeByte) {
  Agreement agreement(router);
  for (int type = 0; type <= 255; ++type) {
    for (const unsigned short cluster : kDeciding) {
      ZigbeeDevice device = ZigbeeDevice().cluster(cluster);
      device.info().devType = static_cast<unsigned char>(type);
      agreement.check(device.info(), 17);
    }
  }
  EXPECT_EQ(agreement.checked(), 256 * 8);
}

namespace {

constexpr unsigned short kDrawnClusters[] = {0x0006, 0x0008, 0x0100, 0x0101, 0x0102, 0x0200, 0x0201,
                                             0x0202, 0x0300, 0x0400, 0x0402, 0x0403, 0x0404, 0x0405,
                                             0x0406, 0x0500, 0x0702, 0x0B04, 0x0503, 0x0504, 0xFFFF};
constexpr const char* kDrawnMakers[] = {"", "NYCE", "Dravotek Ltd.", "OSRAM", "Zen Within"};
constexpr const char* kDrawnModels[] = {"", "3041", "3014 ESW", "SZ-PIR04N", "MiniSD", "SML0", "RC_ACE", "UPIC XE01S"};
constexpr unsigned short kDrawnZones[] = {0x0000, 0x000D, 0x0015, 0x002A, 0x010F, 0x0115, 0x0225, 0x7777};

class Dice {
 public:
  unsigned roll(std::size_t sides) { return static_cast<unsigned>(engine_() % sides); }
  template <typename Item, std::size_t Size>
  Item pick(const Item (&items)[Size]) {
    return items[roll(Size)];
  }

 private:
  std::mt19937 engine_;  // the same devices in every run
};

// Any bytes, but a long list of clusters that matter, and most often texts and a zone type that do.
ZbDeviceInfo anyDevice(Dice& dice) {
  ZbDeviceInfo device{};
  auto* bytes = reinterpret_cast<unsigned char*>(&device);
  for (std::size_t i = 0; i < sizeof device; ++i) bytes[i] = static_cast<unsigned char>(dice.roll(256));
  for (ZbClusterEntry& entry : device.clusters) {
    entry.cluster = dice.pick(kDrawnClusters);
    if (dice.roll(2) == 0) entry.endpoint = static_cast<unsigned short>(dice.roll(4));
  }
  if (dice.roll(8) != 0) std::strcpy(device.manufacturer, dice.pick(kDrawnMakers));
  if (dice.roll(8) != 0) std::strcpy(device.model, dice.pick(kDrawnModels));
  if (dice.roll(8) != 0) device.zoneType = dice.pick(kDrawnZones);
  if (dice.roll(4) != 0) device.devType = 0;
  return device;
}

}  // namespace

TEST_F(OddRecordsTest, AnyBytes) {
  Agreement agreement(router);
  Dice dice;
  for (int i = 0; i < 20000; ++i) agreement.check(anyDevice(dice), static_cast<int>(dice.roll(1000)));
  agreement.expectNothingElseTouched();
  EXPECT_EQ(agreement.checked(), 20000);
}
