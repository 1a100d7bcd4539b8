// Each IAS zone type, and what a zone cluster does to the device around it, by hand.
#include <gtest/gtest.h>
#include <tembra/rules.h>

#include <algorithm>
#include <cstdio>
#include <set>
#include <utility>

#include "classified.h"

using kit::lines;
using kit::Router;
using kit::ZigbeeDevice;

namespace {

struct Zone {
  unsigned short type;
  const char* maker;
  const char* model;
  const char* zoneName;
  int devType;
  const char* name;
  const char* entries;
};

const Zone kZoneRules[] = {
    {0x0000, "", "", "StandardCIE", 10, "StandardCIE #17", "2@1 12@1 9@1 end"},
    {0x000D, "", "", "MotionSensor", 11, "MotionSensor #17", "3@1 12@1 9@1 end"},
    {0x0015, "", "", "ContactSwitch", 12, "ContactSwitch #17", "4@1 12@1 9@1 end"},
    {0x0015, "", "XE01S", "ContactSwitch", 12, "ContactSwitch #17", "12@1 end"},
    {0x0015, "NYCE", "3014", "ContactSwitch", 12, "Tilt Sensor #17", "4@1 12@1 9@1 end"},
    {0x0015, "NYCE", "3010", "ContactSwitch", 12, "ContactSwitch #17", "4@1 12@1 9@1 end"},
    {0x0015, "NYCE!", "3014", "ContactSwitch", 12, "ContactSwitch #17", "4@1 12@1 9@1 end"},
    {0x0028, "", "", "FireSensor", 13, "FireSensor #17", "8@1 12@1 9@1 end"},
    {0x0028, "", "XE01S", "FireSensor", 13, "FireSensor #17", "8@1 12@1 9@1 end"},
    {0x002A, "", "", "WaterSensor", 14, "FloodSensor #17", "6@1 12@1 9@1 end"},
    {0x002A, "NYCE", "3014", "WaterSensor", 14, "FloodSensor #17", "6@1 12@1 9@1 end"},
    {0x002B, "", "", "GasSensor", 15, "GasSensor #17", "7@1 12@1 9@1 end"},
    {0x002C, "", "", "PersonalEmergencyDevice", 16, "PersonalEmergencyDevice #17", "12@1 end"},
    {0x002D, "", "", "VibrationOrMovementSensor", 17, "VibrationOrMovementSensor #17", "5@1 12@1 9@1 end"},
    {0x010F, "", "", "RemoteControl", 18, "RemoteControl #17", "12@1 end"},
    {0x010F, "", "a RC_ACE b", "KeyFob", 19, "KeyFob #17", "24@1 10@1 11@1 end"},
    {0x010F, "Dravotek Ltd.", "", "RemoteControl", 18, "RemoteControl #17", "12@1 end"},
    {0x0115, "", "", "KeyFob", 19, "KeyFob #17", "24@1 10@1 11@1 end"},
    {0x0115, "Dravotek Ltd.", "", "DravotekButton", 61, "Tembra Tap #17", "91@1 12@1 9@1 end"},
    {0x0115, "by Dravotek Ltd. EU", "RC_ACE", "DravotekButton", 61, "Tembra Tap #17", "91@1 12@1 9@1 end"},
    {0x0115, "dravotek ltd.", "", "KeyFob", 19, "KeyFob #17", "24@1 10@1 11@1 end"},
    {0x0115, "NYCE", "3014", "KeyFob", 19, "Tilt Sensor #17", "24@1 10@1 11@1 end"},
    {0x021D, "", "", "Keypad", 20, "Keypad #17", "12@1 end"},
    {0x0225, "", "", "StandardWarningDevice", 21, "StandardWarningDevice #17", "13@1 12@1 9@1 end"},
};

constexpr int kMotion = 11;

// "12@1 end" is one entry.
int countOf(const std::string& entries) { return static_cast<int>(std::count(entries.begin(), entries.end(), '@')); }

std::string zoneLines(const std::string& maker) {
  return "log 0 libTembraAssoc:ias zone cluster\nlog 0 libTembraAssoc:Manufacturer name received:" + maker + "\n";
}

std::string logOf(const Zone& zone) {
  char type[8];
  std::snprintf(type, sizeof type, "%x", zone.type);
  std::string text = zoneLines(zone.maker) + "log 0 libTembraAssoc:Device associated:" + zone.zoneName + " \n";
  if (zone.devType == kMotion) text += "log 0 libTembraAssoc:Detected as a motion sensor\n";
  return text + summary(1, countOf(zone.entries), type);
}

ZigbeeDevice occupancySensor() { return ZigbeeDevice().maker("NYCE").model("3041").cluster(0x0406); }

}  // namespace

TEST(ZoneRulesTest, EveryZoneType) {
  Router router;
  int checked = 0;
  for (const Zone& zone : kZoneRules) {
    const auto device = ZigbeeDevice().maker(zone.maker).model(zone.model).zone(zone.type).cluster(0x0500);
    const Classified found = classify(router, device);
    EXPECT_EQ(router.assoc().GetDeviceTypeInStringFormat(zone.type), std::string(zone.zoneName)) << zone.zoneName;
    EXPECT_EQ(found.name, zone.name) << zone.zoneName;
    EXPECT_EQ(found.type, zone.devType) << zone.zoneName;
    EXPECT_EQ(found.classifiedType, zone.devType) << zone.zoneName;
    EXPECT_EQ(found.entries, zone.entries) << zone.zoneName;
    EXPECT_EQ(found.log, logOf(zone)) << zone.zoneName;
    ++checked;
  }
  EXPECT_EQ(checked, 24);
}

// The rows above use every row of the library's tables.
TEST(ZoneRulesTest, NoRowIsLeftOut) {
  std::set<std::pair<int, std::string>> names;
  std::set<std::string> displayed;
  std::set<const ZbZoneEntries*> entries;
  for (const Zone& zone : kZoneRules) {
    const auto device = ZigbeeDevice().maker(zone.maker).model(zone.model);
    names.emplace(zone.type, zone.zoneName);
    const std::string word(zone.name, std::string(zone.name).find(" #"));
    if (word != zone.zoneName) displayed.insert(word);
    entries.insert(&zbFindZoneEntries(zone.devType, device.info()));
  }
  EXPECT_EQ(names.size(), 14U);
  EXPECT_EQ(std::size(zbZoneNames), 14U);
  EXPECT_EQ(displayed.size(), 3U);
  EXPECT_EQ(std::size(zbZoneDisplayNames), 3U);
  EXPECT_EQ(entries.size(), 12U);
  EXPECT_EQ(std::size(zbZoneEntries), 12U);
  EXPECT_EQ(std::size(zbZoneCases), 4U);
  EXPECT_EQ(std::size(zbZoneTypeExceptions), 1U);
  EXPECT_EQ(std::size(zbZoneAfterwards), 2U);
}

TEST(ZoneRulesTest, AnUnlistedZoneTypeIsUndecided) {
  Router router;
  const Classified found = classify(router, ZigbeeDevice().zone(0x0016).cluster(0x0500));
  EXPECT_EQ(found.nameInWalk, "UnknownDevice #17");
  EXPECT_EQ(found.name, "GenericDevice #17");
  EXPECT_EQ(found.type, 60);
  EXPECT_EQ(found.classifiedType, 0);
  EXPECT_EQ(found.entries, "12@1 end");
  EXPECT_EQ(found.log, zoneLines("") + "log 0 libTembraAssoc:Device associated:UnknownDevice \n" + summary(1, 1, "16"));
}

TEST(ZoneRulesTest, TheTypeLibraryNumbersTheZones) {
  Router router;
  router.numberType("UnknownDevice", 0x105);
  router.numberType("GasSensor", 0x100);
  router.numberType("FireSensor", 21);
  Classified found = classify(router, ZigbeeDevice().zone(0x0016).cluster(0x0500));
  EXPECT_EQ(found.name, "UnknownDevice #17");
  EXPECT_EQ(found.classifiedType, 0x105);
  EXPECT_EQ(found.type, 5) << "the record has one byte for the type";
  found = classify(router, ZigbeeDevice().zone(0x002B).cluster(0x0500));
  EXPECT_EQ(found.type, 60) << "the low byte is 0: undecided";
  EXPECT_EQ(found.classifiedType, 0x100);
  found = classify(router, ZigbeeDevice().zone(0x0028).cluster(0x0500));
  EXPECT_EQ(found.entries, "13@1 12@1 9@1 end");
}

TEST(ZoneRulesTest, AZoneBeforeTheCameraClusterIsACamera) {
  Router router;
  ZigbeeDevice device = ZigbeeDevice().maker("someone").zone(0x0D).cluster(0x0006).cluster(0x0500, 7).cluster(0x0503);
  for (ZbIndexEntry& entry : device.info().indexes) entry.endpoint = 99;
  const Classified found = classify(router, device);
  EXPECT_EQ(found.name, "ZigbeeCamImage #17");
  EXPECT_EQ(found.type, 67);
  EXPECT_EQ(found.classifiedType, 0);
  EXPECT_EQ(found.entries, "1@1 3@7 12@7 9@7 128@99 129@99 130@99 131@99 end");
  EXPECT_EQ(found.log,
            zoneLines("someone") +
                lines({"log 0 libTembraAssoc:Found 503 cluster 2", "log 0 libTembraAssoc:Found 503 device 9"}) +
                summary(1, 8, "d"));
}

TEST(ZoneRulesTest, OnlyTheVeryNextClusterMakesACamera) {
  Router router;
  ZigbeeDevice behindTheEnd = ZigbeeDevice().zone(0x000D).cluster(0x0500);
  behindTheEnd.info().clusters[2].cluster = 0x0503;
  EXPECT_EQ(classify(router, behindTheEnd).name, "MotionSensor #17");
  EXPECT_EQ(classify(router, ZigbeeDevice().zone(0x000D).clusters({0x0500, 0x0020, 0x0503})).name, "MotionSensor #17");
  EXPECT_EQ(classify(router, ZigbeeDevice().zone(0x000D).clusters({0x0503, 0x0500})).name, "MotionSensor #17");
}

TEST(ZoneRulesTest, AZoneBeforeTheOtherClusterIsIgnored) {
  Router router;
  const Classified found = classify(router, ZigbeeDevice().maker("m").zone(0x000D).clusters({0x0006, 0x0500, 0x0504}));
  EXPECT_EQ(found.name, "BinarySwitch #17");
  EXPECT_EQ(found.entries, "1@1 end");
  EXPECT_EQ(found.classifiedType, 0);
  EXPECT_EQ(found.log, zoneLines("m") + summary(1, 1, "d"));
}

TEST(ZoneRulesTest, AnOccupancySensorsZoneIsOnlyCounted) {
  Router router;
  const Classified found = classify(router, occupancySensor().zone(0x000D).cluster(0x0500));
  EXPECT_EQ(found.name, "OccupancySensor #17");
  EXPECT_EQ(found.classifiedType, 0);
  EXPECT_EQ(found.entries, "3@1 end");
  EXPECT_EQ(found.log, zoneLines("NYCE") + summary(2, 1, "d"));
}

TEST(ZoneRulesTest, AnEarlierZoneOfAnOccupancySensorStaysClassified) {
  Router router;
  const auto device = ZigbeeDevice().maker("NYCE").model("3041").zone(0x0015).clusters({0x0500, 0x0406, 0x0500});
  const Classified found = classify(router, device);
  EXPECT_EQ(found.type, 24);
  EXPECT_EQ(found.classifiedType, 12);
  EXPECT_EQ(found.entries, "4@1 12@1 9@1 3@1 end");
}

TEST(ZoneRulesTest, AClusterAfterTheZoneDecidesTheTypeButNotTheProposal) {
  Router router;
  const Classified found = classify(router, ZigbeeDevice().zone(0x0015).clusters({0x0500, 0x0006}));
  EXPECT_EQ(found.name, "BinarySwitch #17");
  EXPECT_EQ(found.type, 1);
  EXPECT_EQ(found.classifiedType, 12);
}
