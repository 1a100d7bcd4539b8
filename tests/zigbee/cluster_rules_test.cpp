// Each rule of each cluster, by hand.
#include <gtest/gtest.h>
#include <tembra/rules.h>

#include <algorithm>
#include <set>

#include "classified.h"

using kit::Router;
using kit::ZigbeeDevice;

namespace {

struct Rule {
  const char* title;
  ZigbeeDevice device;
  const char* name;
  int type;
  const char* entries;
  int counted;
};

ZigbeeDevice with(std::initializer_list<unsigned short> clusters) { return ZigbeeDevice().clusters(clusters); }

ZigbeeDevice of(const char* maker, const char* model, std::initializer_list<unsigned short> clusters) {
  return ZigbeeDevice().maker(maker).model(model).clusters(clusters);
}

// With all electrical checks passed.
ZigbeeDevice metered(ZigbeeDevice device) {
  device.info().acCheckA = device.info().acCheckB = device.info().acCheckC = 1;
  return device;
}

ZigbeeDevice plug(const char* maker, unsigned short wordA, unsigned short wordB) {
  ZigbeeDevice device = metered(of(maker, "", {0x0006, 0x0B04}));
  device.info().productWordA = wordA;
  device.info().productWordB = wordB;
  return device;
}

const Rule kSwitches[] = {
    {"on/off", with({0x0006}), "BinarySwitch #17", 1, "1@1 end", 1},
    {"a second on/off", with({0x0006, 0x0006}), "MultiSwitch #17", 43, "1@1 1@1 end", 2},
    {"a third on/off", with({0x0006, 0x0006, 0x0006}), "BinarySwitch #17", 1, "1@1 1@1 1@1 end", 3},
    {"level", with({0x0008}), "MultilevelSwitch #17", 2, "18@1 end", 1},
    {"on/off, level", with({0x0006, 0x0008}), "MultilevelSwitchOnOff #17", 4, "1@1 18@1 end", 2},
    {"level, on/off", with({0x0008, 0x0006}), "BinarySwitch #17", 1, "18@1 1@1 end", 2},
    {"on/off, level, on/off", with({0x0006, 0x0008, 0x0006}), "BinarySwitch #17", 1, "1@1 18@1 1@1 end", 3},
    {"on/off, level, level", with({0x0006, 0x0008, 0x0008}), "MultilevelSwitch #17", 2, "1@1 18@1 18@1 end", 3},
    {"on/off on another type", of("NYCE", "3041", {0x0406, 0x0006}), "BinarySwitch #17", 1, "3@1 1@1 end", 2},
    {"colour", with({0x0300}), "GenericDevice #17", 60, "31@1 32@1 33@1 end", 1},
    {"on/off, colour", with({0x0006, 0x0300}), "GenericDevice #17", 60, "1@1 31@1 32@1 33@1 end", 2},
    {"on/off, level, colour", with({0x0006, 0x0008, 0x0300}), "ColorDimmableLight #17", 32,
     "1@1 18@1 31@1 32@1 33@1 end", 3},
    {"and colour again", with({0x0006, 0x0008, 0x0300, 0x0300}), "GenericDevice #17", 60,
     "1@1 18@1 31@1 32@1 33@1 31@1 32@1 33@1 end", 4},
};

const Rule kFixtures[] = {
    {"shade", with({0x0100}), "GenericDevice #17", 60, "end", 1},
    {"on/off, shade", with({0x0006, 0x0100}), "GenericDevice #17", 60, "1@1 end", 2},
    {"door lock", with({0x0101}), "ZigbeeDoorLock #17", 28, "23@1 end", 1},
    {"window covering", with({0x0102}), "Window Covering #17", 26, "116@1 end", 1},
    {"pump", with({0x0200}), "GenericDevice #17", 60, "end", 1},
    {"on/off, pump", with({0x0006, 0x0200}), "GenericDevice #17", 60, "1@1 end", 2},
    {"thermostat", with({0x0201}), "Thermostat #17", 7, "35@1 36@1 37@1 38@1 25@1 end", 1},
    {"thermostat by its maker", of("Zen Within", "", {0x0201}), "Zen Thermostat #17", 62,
     "35@1 36@1 37@1 38@1 25@1 end", 1},
    {"thermostat by its model", of("", "a UPIC b", {0x0201}), "IR Extender #17", 65, "35@1 36@1 37@1 38@1 25@1 end", 1},
    {"the maker before the model", of("Zen Within", "UPIC", {0x0201}), "Zen Thermostat #17", 62,
     "35@1 36@1 37@1 38@1 25@1 end", 1},
    {"not quite that maker", of("Zen Within Inc", "", {0x0201}), "Thermostat #17", 7, "35@1 36@1 37@1 38@1 25@1 end",
     1},
    {"small letters", of("zen within", "upic", {0x0201}), "Thermostat #17", 7, "35@1 36@1 37@1 38@1 25@1 end", 1},
    {"fan", with({0x0202}), "GenericDevice #17", 60, "39@1 40@1 end", 0},
    {"thermostat, fan", with({0x0201, 0x0202}), "Thermostat #17", 7, "35@1 36@1 37@1 38@1 25@1 39@1 40@1 end", 1},
};

const Rule kMeasurements[] = {
    {"illuminance", with({0x0400}), "GenericDevice #17", 60, "28@1 end", 1},
    {"door lock, illuminance", with({0x0101, 0x0400}), "GenericDevice #17", 60, "23@1 28@1 end", 2},
    {"temperature", with({0x0402}), "ZigbeeTempSensor #17", 29, "25@1 end", 1},
    {"on/off, temperature", with({0x0006, 0x0402}), "GenericDevice #17", 60, "1@1 25@1 end", 2},
    {"temperature twice", with({0x0402, 0x0402}), "GenericDevice #17", 60, "25@1 25@1 end", 2},
    {"temperature thrice", with({0x0402, 0x0402, 0x0402}), "ZigbeeTempSensor #17", 29, "25@1 25@1 25@1 end", 3},
    {"temperature of the undecided model", of("", "SML001", {0x0402}), "GenericDevice #17", 60, "25@1 end", 1},
    {"unless a later cluster decides", of("", "SML001", {0x0402, 0x0101}), "ZigbeeDoorLock #17", 28, "25@1 23@1 end",
     2},
    {"occupancy, temperature", of("NYCE", "3041", {0x0406, 0x0402}), "OccupancySensor #17", 24, "3@1 25@1 end", 2},
    {"the undecided model even then", of("NYCE", "3041 SML0", {0x0406, 0x0402}), "GenericDevice #17", 60,
     "3@1 25@1 end", 2},
    {"pressure", with({0x0403}), "GenericDevice #17", 60, "26@1 end", 1},
    {"temperature, pressure", with({0x0402, 0x0403}), "GenericDevice #17", 60, "25@1 26@1 end", 2},
    {"flow", with({0x0404}), "GenericDevice #17", 60, "end", 1},
    {"on/off, flow", with({0x0006, 0x0404}), "GenericDevice #17", 60, "1@1 end", 2},
    {"humidity", with({0x0405}), "GenericDevice #17", 60, "27@1 end", 1},
    {"temperature, humidity", with({0x0402, 0x0405}), "GenericDevice #17", 60, "25@1 27@1 end", 2},
    {"occupancy, humidity", of("NYCE", "3041", {0x0406, 0x0405}), "OccupancySensor #17", 24, "3@1 27@1 end", 2},
    {"occupancy", of("NYCE", "NCZ-3041-HA", {0x0406}), "OccupancySensor #17", 24, "3@1 end", 1},
    {"occupancy of another model", of("NYCE", "3040", {0x0406}), "GenericDevice #17", 60, "3@1 end", 1},
    {"occupancy of another maker", of("NYCE Inc", "3041", {0x0406}), "GenericDevice #17", 60, "3@1 end", 1},
    {"on/off, occupancy", with({0x0006, 0x0406}), "BinarySwitch #17", 1, "1@1 3@1 end", 2},
};

const Rule kMeters[] = {
    {"metering", with({0x0702}), "GenericDevice #17", 60, "108@1 109@1 110@1 111@1 end", 1},
    {"on/off, metering", with({0x0006, 0x0702}), "GenericDevice #17", 60, "1@1 108@1 109@1 110@1 111@1 end", 2},
    {"on/off, metering that keeps the type", of("", "ESW", {0x0006, 0x0702}), "BinarySwitch #17", 1,
     "1@1 108@1 109@1 110@1 111@1 end", 2},
    {"electrical measurement", with({0x0B04}), "GenericDevice #17", 60, "86@1 52@1 53@1 54@1 end", 1},
    {"on/off, electrical measurement", metered(with({0x0006, 0x0B04})), "SmartACSwitch #17", 22,
     "1@1 86@1 52@1 53@1 54@1 end", 2},
    {"undecided by a meter in between", with({0x0006, 0x0702, 0x0B04}), "GenericDevice #17", 60,
     "1@1 108@1 109@1 110@1 111@1 86@1 52@1 53@1 54@1 end", 3},
    {"decided for the meter that keeps the type", metered(of("", "ESW", {0x0006, 0x0702, 0x0B04})), "SmartACSwitch #17",
     22, "1@1 108@1 109@1 110@1 111@1 86@1 52@1 53@1 54@1 end", 3},
    {"two on/off, electrical measurement", with({0x0006, 0x0006, 0x0B04}), "MultiSwitch #17", 43,
     "1@1 1@1 86@1 52@1 53@1 54@1 end", 3},
    {"dimmer, electrical measurement", with({0x0006, 0x0008, 0x0B04}), "MultilevelSwitchOnOff #17", 4,
     "1@1 18@1 86@1 52@1 53@1 54@1 end", 3},
    {"electrical measurement, on/off", with({0x0B04, 0x0006}), "BinarySwitch #17", 1, "86@1 52@1 53@1 54@1 1@1 end", 2},
    {"the maker's own plug", plug("Dravotek Ltd.", 0x1002, 0x5EC0), "Tobble Plug #17", 50,
     "1@1 86@1 52@1 53@1 54@1 end", 2},
    {"another first word", plug("Dravotek Ltd.", 0x1003, 0x5EC0), "SmartACSwitch #17", 22,
     "1@1 86@1 52@1 53@1 54@1 end", 2},
    {"another second word", plug("Dravotek Ltd.", 0x1002, 0xC05E), "SmartACSwitch #17", 22,
     "1@1 86@1 52@1 53@1 54@1 end", 2},
    {"a longer maker", plug("Dravotek Ltd. EU", 0x1002, 0x5EC0), "SmartACSwitch #17", 22, "1@1 86@1 52@1 53@1 54@1 end",
     2},
    {"a plug without checks", of("OSRAM", "", {0x0006, 0x0B04}), "BinarySwitch #17", 1, "1@1 86@1 52@1 53@1 54@1 end",
     2},
};

const Rule kNoRules[] = {
    {"no cluster", with({}), "GenericDevice #17", 60, "end", 0},
    {"unknown", with({0x0020}), "GenericDevice #17", 60, "end", 0},
    {"the camera's cluster alone", with({0x0503}), "GenericDevice #17", 60, "end", 0},
    {"the unlucky zone's cluster alone", with({0x0504}), "GenericDevice #17", 60, "end", 0},
    {"unknown between", with({0x0006, 0x0020, 0x0008}), "MultilevelSwitchOnOff #17", 4, "1@1 18@1 end", 2},
    {"basic", with({0x0000}), "GenericDevice #17", 60, "end", 0},
    {"the highest", with({0xFFFE}), "GenericDevice #17", 60, "end", 0},
};

// How many rows it checked.
template <std::size_t Size>
int check(const Rule (&rules)[Size]) {
  Router router;
  int checked = 0;
  for (const Rule& rule : rules) {
    const Classified found = classify(router, rule.device);
    EXPECT_EQ(found.result, 0) << rule.title;
    EXPECT_EQ(found.name, rule.name) << rule.title;
    EXPECT_EQ(found.type, rule.type) << rule.title;
    EXPECT_EQ(found.entries, rule.entries) << rule.title;
    EXPECT_EQ(found.classifiedType, 0) << rule.title;
    const std::string last = summary(rule.counted, router.assoc().zbDevice.indexCount, "0");
    EXPECT_EQ(found.log.substr(found.log.size() - std::min(found.log.size(), last.size())), last) << rule.title;
    ++checked;
  }
  return checked;
}

// The library's rules of the clusters that the rows' devices have.
template <std::size_t Size>
void collect(const Rule (&rules)[Size], std::set<const ZbClusterRule*>& tried) {
  for (const Rule& rule : rules) {
    for (const ZbClusterEntry& entry : rule.device.info().clusters) {
      if (entry.cluster == ZB_END) break;
      if (const ZbClusterRule* found = zbFindClusterRule(entry.cluster)) tried.insert(found);
    }
  }
}

}  // namespace

TEST(ClusterRulesTest, Switches) { EXPECT_EQ(check(kSwitches), 13); }
TEST(ClusterRulesTest, Fixtures) { EXPECT_EQ(check(kFixtures), 14); }
TEST(ClusterRulesTest, Measurements) { EXPECT_EQ(check(kMeasurements), 21); }
TEST(ClusterRulesTest, Meters) { EXPECT_EQ(check(kMeters), 15); }
TEST(ClusterRulesTest, ClustersWithoutARule) { EXPECT_EQ(check(kNoRules), 7); }

TEST(ClusterRulesTest, NoRuleIsLeftOut) {
  std::set<const ZbClusterRule*> tried = {zbFindClusterRule(ZB_IAS_ZONE)};  // it has tests of its own
  collect(kSwitches, tried);
  collect(kFixtures, tried);
  collect(kMeasurements, tried);
  collect(kMeters, tried);
  EXPECT_EQ(tried.size(), 18U);
  EXPECT_EQ(std::size(zbClusterRules), 18U);
  std::set<const ZbClusterRule*> none;
  collect(kNoRules, none);
  EXPECT_EQ(none.size(), 2U) << "on/off and level, around the cluster without a rule";
}

TEST(ClusterRulesTest, EntriesCarryTheLowByteOfTheirClustersEndpoint) {
  Router router;
  const auto device = ZigbeeDevice().cluster(0x0006, 3).cluster(0x0201, 0x1104).cluster(0x0006, 0xFF);
  EXPECT_EQ(classify(router, device).entries, "1@3 35@4 36@4 37@4 38@4 25@4 1@255 end");
}

TEST(ClusterRulesTest, TheTypeThatWasReceivedTakesPart) {
  Router router;
  ZigbeeDevice device = with({0x0006});
  device.info().devType = 1;
  EXPECT_EQ(classify(router, device).name, "MultiSwitch #17");
  device.info().devType = 24;
  EXPECT_EQ(classify(router, device).name, "BinarySwitch #17");
  ZigbeeDevice colour = with({0x0300});
  colour.info().devType = 4;
  EXPECT_EQ(classify(router, colour).name, "ColorDimmableLight #17");
  ZigbeeDevice silent = with({0x0020});
  silent.info().devType = 255;
  EXPECT_EQ(classify(router, silent).type, 255);
}

TEST(ClusterRulesTest, TheSummaryIsToldBeforeAnUndecidedDeviceIsGeneric) {
  Router router;
  const Classified found = classify(router, with({0x0006, 0x0100}).zone(0xBEEF));
  EXPECT_EQ(found.log, summary(2, 1, "beef"));
  EXPECT_EQ(found.nameInWalk, "BinarySwitch #17");
  EXPECT_EQ(found.typeInWalk, 0);
  EXPECT_EQ(found.name, "GenericDevice #17");
}

TEST(ClusterRulesTest, AManufacturersWordStandsInTheLogOfItsPlug) {
  Router router;
  EXPECT_EQ(classify(router, plug("Dravotek Ltd.", 0x1002, 0x5EC0)).log,
            "log 0 libTembraAssoc:Manu name Dravotek Ltd. \\n\n" + summary(2, 5, "0"));
  EXPECT_EQ(classify(router, plug("OSRAM", 0x1002, 0x5EC0)).log,
            "log 0 libTembraAssoc:Manufacturer Name: Osram\n" + summary(2, 5, "0"));
  EXPECT_EQ(classify(router, plug("somebody", 0, 0)).log, summary(2, 5, "0"));
}
