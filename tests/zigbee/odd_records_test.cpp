// Records that no well-behaved server sends: they are read as the oracle reads them, and nothing else is touched.
#include <gtest/gtest.h>

#include <cstring>
#include <random>

#include "agreement.h"
#include "kit/router_test.h"

using kit::ZigbeeDevice;

namespace {

using OddRecordsTest = kit::RouterTest;

constexpr unsigned short kOnOff = 0x0006, kThermostat = 0x0201, kLight = 0x0400, kZone = 0x0500, kCamera = 0x0503,
                         kMeter = 0x0702, kMeasurement = 0x0B04, kNoRule = 0x0020;
constexpr unsigned char kIlluminanceEntry = 28;  // an index entry
constexpr std::size_t kBytesBehindType = 318;

struct OddRecord {
  const char* title;
  ZigbeeDevice device;
};

ZigbeeDevice repeated(unsigned short cluster, int times) {
  ZigbeeDevice device;
  for (int i = 0; i < times; ++i) device.cluster(cluster);
  return device;
}

// Received with one byte that the library has not written yet.
ZigbeeDevice with(unsigned char byte, std::size_t at, ZigbeeDevice device) {
  reinterpret_cast<unsigned char*>(&device.info())[at] = byte;
  return device;
}

ZigbeeDevice motion(std::initializer_list<unsigned short> clusters) {
  return ZigbeeDevice().model("SZ-PIR04N").zone(0x000D).clusters(clusters);
}

ZigbeeDevice button() { return ZigbeeDevice().zone(0x0115).cluster(kZone); }
ZigbeeDevice remote() { return ZigbeeDevice().zone(0x010F).cluster(kZone); }

std::string filled(std::size_t size, const std::string& end) { return std::string(size - end.size(), 'x') + end; }
std::string withNul(const char* first, const char* second) { return std::string(first) + '\0' + second; }

const OddRecord kFullTables[] = {
    {"28 entries", repeated(kOnOff, 28)},
    {"29 entries", repeated(kOnOff, 29)},
    {"30 entries", repeated(kOnOff, 30)},
    {"150 entries", repeated(kThermostat, 30)},
    {"30 measurements", repeated(kMeasurement, 30)},
    {"30 meters", repeated(kMeter, 30)},
    {"30 zones", repeated(kZone, 30).zone(0x0015)},
    {"30 zones with a scan", repeated(kZone, 30).zone(0x0015).model("SZ-PIR04N")},
    {"a camera in the last place", repeated(kOnOff, 27).clusters({kZone, kCamera})},
    {"measurement behind 16 entries", repeated(kOnOff, 16).cluster(kMeasurement, 7)},
    {"measurement behind 17 entries", repeated(kOnOff, 17).cluster(kMeasurement, 7)},
    {"measurement behind 28 entries", repeated(kOnOff, 28).cluster(kMeasurement, 7)},
    {"measurement behind 29 entries", repeated(kOnOff, 29).cluster(kMeasurement, 7)},
    {"measurement behind 50 entries", repeated(kThermostat, 10).cluster(kMeasurement, 7)},
    {"measurement up to the record's end", repeated(kThermostat, 29).cluster(kMeasurement, 7)},
};

// The scan for illuminance goes from the next entry's place down to byte 318, and both ends hold what was received.
const OddRecord kScans[] = {
    {"illuminance twice before", motion({kLight, kOnOff, kLight, kZone})},
    {"illuminance behind", motion({kZone, kLight})},
    {"in the received count", with(kIlluminanceEntry, kBytesBehindType, motion({kZone}))},
    {"in the received count, and before", with(kIlluminanceEntry, kBytesBehindType, motion({kLight, kZone}))},
    {"at the next entry's place", with(kIlluminanceEntry, kBytesBehindType + 8, motion({kZone}))},
    {"behind the next entry's place", with(kIlluminanceEntry, kBytesBehindType + 10, motion({kZone}))},
    {"in an endpoint", with(kIlluminanceEntry, kBytesBehindType + 9, motion({kZone}))},
    {"in the endpoint byte of entry 0", with(kIlluminanceEntry, kBytesBehindType + 1, motion({kZone}))},
    {"behind a full table", with(kIlluminanceEntry, kBytesBehindType + 60,
                                 repeated(kOnOff, 26).cluster(kZone).zone(0x000D).model("SZ-PIR04N"))},
};

const OddRecord kTextsAndLists[] = {
    {"no end mark", repeated(kOnOff, 30).maker(std::string(80, '\x06'))},
    {"a camera's cluster behind the last one", repeated(kNoRule, 29).cluster(kZone).zone(0x000D).maker("\x03\x05")},
    {"an ignored zone behind the last one", repeated(kNoRule, 29).cluster(kZone).zone(0x000D).maker("\x04\x05")},
    {"a camera in the last entries", repeated(kNoRule, 28).clusters({kZone, kCamera}).zone(0x000D)},
    {"a camera behind the end mark", with(3, 12 + 8, with(5, 12 + 9, ZigbeeDevice().zone(0x000D).cluster(kZone)))},
    {"a maker that fills its field", button().maker(filled(80, "Dravotek Ltd.")).model(filled(22, "3014"))},
    {"a model that fills its field", ZigbeeDevice().model(filled(22, "UPIC")).cluster(kThermostat)},
    {"a maker that ends behind its field", with('.', 212, button().maker(filled(80, "Dravotek Ltd")))},
    {"a model that ends behind its field", with('E', kBytesBehindType, remote().model(filled(22, "RC_AC")))},
    {"a maker behind the end of the text", button().maker(withNul("a", "Dravotek Ltd."))},
};

}  // namespace

TEST_F(OddRecordsTest, AreReadAsTheOracleReadsThem) {
  Agreement agreement(router);
  const auto check = [&agreement](const auto& records) {
    for (const OddRecord& record : records) {
      SCOPED_TRACE(record.title);
      agreement.check(record.device.info(), 17);
    }
  };
  check(kFullTables);
  check(kScans);
  check(kTextsAndLists);
  agreement.expectNothingElseTouched();
  EXPECT_EQ(agreement.checked(), 15 + 9 + 10);
}

// The record has one byte for the type that the type library numbers.
TEST_F(OddRecordsTest, TheTypeLibraryNumbersTheZones) {
  router.numberType("UnknownDevice", 0x105);
  router.numberType("GasSensor", 0x100);
  router.numberType("FireSensor", 21);
  Agreement agreement(router);
  for (const unsigned short zone : std::initializer_list<unsigned short>{0x0016, 0x002B, 0x0028}) {
    agreement.check(ZigbeeDevice().zone(zone).cluster(kZone).info(), 17);
  }
  EXPECT_EQ(agreement.checked(), 3);
}

TEST_F(OddRecordsTest, TheSummaryIsToldBeforeAnUndecidedDeviceIsGeneric) {
  TembraAssociation& assoc = router.assoc();
  assoc.zbDevice = ZigbeeDevice().zone(0xBEEF).clusters({kOnOff, 0x0100}).info();
  DevId = 17;
  std::string told;
  router.onLog([&](const std::string& line) {
    if (line == "libTembraAssoc:No. of clusters found:2 and indexes:1 zonetype:beef") {
      told += assoc.devName + (", type " + std::to_string(assoc.zbDevice.devType));
    }
  });
  EXPECT_EQ(assoc.validate_DeviceType(), 0);
  EXPECT_EQ(told, "BinarySwitch #17, type 0");
  EXPECT_STREQ(assoc.devName, "GenericDevice #17");
}

TEST_F(OddRecordsTest, ANameIsWrittenOverTheEndpointsBehindTheTable) {
  TembraAssociation& assoc = router.assoc();
  assoc.zbDevice = repeated(kOnOff, 29).cluster(kMeasurement, 7).info();
  assoc.validate_DeviceType();
  char name[] = "abc";
  assoc.setDevName(name);
  assoc.addingDone();
  EXPECT_EQ(std::memcmp(assoc.zbDevice.name, "abc\0\0\7\0\7", 8), 0);
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
