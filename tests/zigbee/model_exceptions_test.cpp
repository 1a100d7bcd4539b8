// What single models do to the rules, by hand.
#include <gtest/gtest.h>

#include "classified.h"

using kit::lines;
using kit::Router;
using kit::ZigbeeDevice;

namespace {

constexpr char kIlluminanceLine[] = "log 0 libTembraAssoc:Sercomm motion and illuminance found\n";
constexpr unsigned char kIlluminanceEntry = 28;

int timesIn(const std::string& text, const std::string& part) {
  int times = 0;
  for (auto at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) ++times;
  return times;
}

ZigbeeDevice smokeDetector(unsigned short endpoint) {
  return ZigbeeDevice().maker("m").model("MiniSD").zone(0x0028).cluster(0x0500, endpoint);
}

}  // namespace

TEST(SmallSmokeDetectorTest, OnItsSecondEndpointItDetectsMotion) {
  Router router;
  const Classified found = classify(router, smokeDetector(2));
  EXPECT_EQ(found.classifiedType, 11);
  EXPECT_EQ(found.entries, "3@2 12@2 9@2 end");
  EXPECT_EQ(found.nameInWalk, "FireSensor #17") << "the name is still that of the zone type";
  EXPECT_EQ(found.typeInWalk, 0);
  EXPECT_EQ(found.name, "GenericDevice #17");
  EXPECT_EQ(found.type, 60);
  EXPECT_EQ(found.log, lines({
                           "log 0 libTembraAssoc:ias zone cluster",
                           "log 0 libTembraAssoc:Manufacturer name received:m",
                           "log 0 libTembraAssoc:Mini smoke detector found",
                           "log 0 libTembraAssoc:Device associated:FireSensor ",
                           "log 0 libTembraAssoc:Detected as a motion sensor",
                           "log 0 libTembraAssoc:No. of clusters found:1 and indexes:3 zonetype:28",
                       }));
}

TEST(SmallSmokeDetectorTest, OnAnyOtherEndpointItStaysWhatItsZoneSays) {
  Router router;
  for (const unsigned short endpoint : std::initializer_list<unsigned short>{1, 3, 0x0102, 0x0200}) {
    const Classified found = classify(router, smokeDetector(endpoint));
    EXPECT_EQ(found.classifiedType, 13) << endpoint;
    EXPECT_EQ(found.type, 60) << endpoint;
    EXPECT_EQ(timesIn(found.log, "Mini smoke detector found"), 1) << endpoint;
    EXPECT_EQ(found.entries.substr(0, 2), "8@") << endpoint;
  }
}

TEST(SmallSmokeDetectorTest, ALaterClusterStillDecides) {
  Router router;
  const Classified found = classify(router, smokeDetector(2).cluster(0x0402));
  EXPECT_EQ(found.name, "ZigbeeTempSensor #17");
  EXPECT_EQ(found.type, 29);
  EXPECT_EQ(found.classifiedType, 11);
}

namespace {

// The scan goes from the place of the next entry down to byte 318, and both ends still hold what was received.
struct MotionSensor {
  const char* title;
  std::initializer_list<unsigned short> clusters;
  int illuminanceAt;  // a byte of the record that holds 28 before, 0: none
  int hits;
};

constexpr unsigned short kOnOff = 0x0006, kLight = 0x0400, kZone = 0x0500;

const MotionSensor kMotionSensors[] = {
    {"no illuminance", {kZone}, 0, 0},
    {"illuminance before", {kLight, kZone}, 0, 1},
    {"twice before", {kLight, kOnOff, kLight, kZone}, 0, 2},
    {"illuminance behind", {kZone, kLight}, 0, 0},
    {"in the received count", {kZone}, 318, 1},
    {"at the next entry's place", {kZone}, 320 + 2 * 3, 1},
    {"before the next entry's place, now overwritten", {kZone}, 320 + 2 * 2, 0},
    {"behind the next entry's place", {kZone}, 320 + 2 * 4, 0},
    {"in an endpoint", {kZone}, 321 + 2 * 3, 0},
    {"in the endpoint byte of entry 0", {kZone}, 319, 0},
    {"in the received count, and before", {kLight, kZone}, 318, 2},
};

}  // namespace

TEST(MotionWithIlluminanceTest, EveryEntryOfIlluminanceUnsettlesTheZone) {
  Router router;
  int checked = 0;
  for (const MotionSensor& row : kMotionSensors) {
    ZigbeeDevice device = ZigbeeDevice().model("SZ-PIR04N").zone(0x000D).clusters(row.clusters);
    if (row.illuminanceAt != 0) reinterpret_cast<unsigned char*>(&device.info())[row.illuminanceAt] = kIlluminanceEntry;
    const Classified found = classify(router, device);
    EXPECT_EQ(timesIn(found.log, kIlluminanceLine), row.hits) << row.title;
    const bool settled = row.hits == 0 && row.clusters.end()[-1] == kZone;
    EXPECT_EQ(found.type, settled ? 11 : 60) << row.title;
    EXPECT_EQ(found.classifiedType, 11) << row.title;
    ++checked;
  }
  EXPECT_EQ(checked, 11);
}

TEST(MotionWithIlluminanceTest, LooksAtTheByteBehindAFullTable) {
  Router router;
  ZigbeeDevice device = ZigbeeDevice().model("SZ-PIR04N").zone(0x000D);
  for (int i = 0; i < 26; ++i) device.cluster(kOnOff, 1);
  device.cluster(kZone, 1);
  device.info().name[0] = kIlluminanceEntry;
  const Classified found = classify(router, device);
  EXPECT_EQ(timesIn(found.log, kIlluminanceLine), 1);
  EXPECT_EQ(found.type, 60);
}

TEST(MotionWithIlluminanceTest, AppliesToEveryZoneTypeOfTheModel) {
  Router router;
  const auto contact = ZigbeeDevice().model("x SZ-PIR04N x").zone(0x0015).clusters({kLight, kZone});
  EXPECT_EQ(classify(router, contact).type, 60);
  const auto other = ZigbeeDevice().model("SZ-PIR04").zone(0x0015).clusters({kLight, kZone});
  EXPECT_EQ(classify(router, other).type, 12);
  const auto smoke = ZigbeeDevice().model("MiniSD SZ-PIR04N").zone(0x0015).clusters({kLight, kZone});
  EXPECT_EQ(timesIn(classify(router, smoke).log, kIlluminanceLine), 0) << "the other exception comes first";
}

TEST(ElectricalMeasurementTest, ItsEndpointSpreadsOverThirteenEntries) {
  Router router;
  classify(router, ZigbeeDevice().cluster(0x0006, 1).cluster(0x0B04, 0x0A05).cluster(0x0406, 9).maker("OSRAM"));
  const ZbDeviceInfo& device = router.assoc().zbDevice;
  EXPECT_EQ(entriesOf(device), "1@1 86@5 52@5 53@5 54@5 3@9 end");
  for (int entry = 7; entry <= 14; ++entry) EXPECT_EQ(device.indexes[entry - 1].endpoint, 5) << entry;
  EXPECT_EQ(device.indexes[15 - 1].endpoint, 0);
  for (int entry = 8; entry <= 29; ++entry) EXPECT_EQ(device.indexes[entry - 1].type, 0) << entry;
}

TEST(ElectricalMeasurementTest, TheChecksDecideWhetherItIsAClassifiableSwitch) {
  Router router;
  for (unsigned checks = 0; checks < 8; ++checks) {
    ZigbeeDevice device = ZigbeeDevice().clusters({0x0006, 0x0B04});
    device.info().acCheckA = (checks & 1U) != 0 ? 0x0100 : 0;
    device.info().acCheckB = (checks & 2U) != 0 ? 0x0100 : 0;
    device.info().acCheckC = (checks & 4U) != 0 ? 1 : 0;
    const bool passes = checks == 3 || checks == 5 || checks == 7;  // A with B or C or both
    const Classified found = classify(router, device);
    EXPECT_EQ(found.result, passes ? 0 : -1) << checks;
    EXPECT_EQ(found.type, passes ? 22 : 1) << checks;
    EXPECT_EQ(found.name, passes ? "SmartACSwitch #17" : "BinarySwitch #17") << checks;
  }
}

TEST(ElectricalMeasurementTest, AFailedCheckLeavesTheRecordHalfWritten) {
  Router router;
  ZigbeeDevice device = ZigbeeDevice().maker("another").zone(0x000D).clusters({0x0500, 0x0006, 0x0B04, 0x0101});
  device.info().productWordA = 0x1002;
  device.info().productWordB = 0x5EC0;
  device.info().indexCount = 200;
  device.info().indexes[8] = {77, 0};
  const Classified found = classify(router, device);
  EXPECT_EQ(found.result, -1);
  EXPECT_EQ(found.name, "BinarySwitch #17");
  EXPECT_EQ(found.type, 1);
  EXPECT_EQ(found.classifiedType, 11);
  const ZbDeviceInfo& record = router.assoc().zbDevice;
  EXPECT_EQ(record.indexCount, 200) << "as received";
  EXPECT_EQ(record.indexes[7].type, 54) << "the entries stay";
  EXPECT_EQ(record.indexes[8].type, 77) << "no end entry";
  EXPECT_EQ(timesIn(found.log, "No. of clusters found"), 0);
  EXPECT_EQ(timesIn(found.log, "\n"), 4) << found.log;
}

TEST(IndexTableTest, TheEndEntryKeepsItsEndpoint) {
  Router router;
  ZigbeeDevice device = ZigbeeDevice().cluster(0x0006);
  device.info().indexes[1].endpoint = 42;
  device.info().at319 = 43;
  classify(router, device);
  const ZbDeviceInfo& record = router.assoc().zbDevice;
  EXPECT_EQ(record.indexes[1].type, 255);
  EXPECT_EQ(record.indexes[1].endpoint, 42);
  EXPECT_EQ(record.at319, 43);
}
