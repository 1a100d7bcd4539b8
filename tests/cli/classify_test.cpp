// tembra-assoc classify: what the library makes of every kind of device, and why, without any server.
#include <gtest/gtest.h>

#include <filesystem>
#include <nlohmann/json.hpp>

#include "support/classified.h"
#include "support/files.h"

namespace tembra::test {
namespace {

using Json = nlohmann::json;

struct Kind {
  const char* description;
  int type;
  const char* name;
  std::vector<std::vector<int>> indexes;  ///< [type, endpoint or instance]
  std::vector<int> choices;
  const char* because;  ///< among the reasons
};

const Kind kZigbeeKinds[] = {
    {R"({"clusters": [[6, 1], [8, 1], [768, 1]]})",
     32,
     "ColorDimmableLight #1",
     {{1, 1}, {18, 1}, {31, 1}, {32, 1}, {33, 1}},
     {},
     R"(0x0300 on endpoint 1: colour control; entries 31, 32, 33; type is 4: name "ColorDimmableLight", type 32)"},
    {R"({"clusters": [[513, 1]], "manufacturer": "Zen Within"})",
     62,
     "Zen Thermostat #1",
     {{35, 1}, {36, 1}, {37, 1}, {38, 1}, {25, 1}},
     {},
     R"(0x0201 on endpoint 1: thermostat; entries 35, 36, 37, 38, 25; manufacturer is "Zen Within": )"
     R"(name "Zen Thermostat", type 62)"},
    {R"({"clusters": [[6, 1], ["0x0B04", 1]], "manufacturer": "Dravotek Ltd.", "product_words": ["0x1002", "0x5EC0"]})",
     50,
     "Tobble Plug #1",
     {{1, 1}, {86, 1}, {52, 1}, {53, 1}, {54, 1}},
     {},
     "log: Manu name Dravotek Ltd. \n"},
    {R"({"clusters": [[6, 1], ["0x0B04", 1]], "ac_checks": [1, 1, 0]})",
     22,
     "SmartACSwitch #1",
     {{1, 1}, {86, 1}, {52, 1}, {53, 1}, {54, 1}},
     {},
     R"(0x0B04 on endpoint 1: electrical measurement; entries 86, 52, 53, 54; manufacturer is not "OSRAM": )"
     R"(name "SmartACSwitch", type 22)"},
    {R"({"clusters": [[1280, 7]], "zone_type": 0})",
     10,
     "StandardCIE #1",
     {{2, 7}, {12, 7}, {9, 7}},
     {21, 19, 10},
     "to choose from: what the zone's type 10 has"},
    {R"({"clusters": [[1280, 1]], "zone_type": 42})",
     14,
     "FloodSensor #1",
     {{6, 1}, {12, 1}, {9, 1}},
     {},
     "0x0500 on endpoint 1: IAS zone; zone type 0x002A is WaterSensor, classified as type 14; entries 6, 12, 9; "
     R"(type 14, name "FloodSensor")"},
    {R"({"clusters": [[1280, 2]], "zone_type": 40, "model": "MiniSD"})",
     60,
     "GenericDevice #1",
     {{3, 2}, {12, 2}, {9, 2}},
     {},
     "0x0500 on endpoint 2: IAS zone; zone type 0x0028 is FireSensor, classified as type 11; entries 3, 12, 9; "
     R"(type 0, name "FireSensor"; model contains "MiniSD": of type 11 on endpoint 2; model contains "MiniSD": then type 0)"},
    {R"({"clusters": [[1024, 1], [1280, 1]], "zone_type": 13, "model": "SZ-PIR04N"})",
     60,
     "GenericDevice #1",
     {{28, 1}, {3, 1}, {12, 1}, {9, 1}},
     {},
     "0x0500 on endpoint 1: IAS zone; zone type 0x000D is MotionSensor, classified as type 11; entries 3, 12, 9; "
     R"(type 0, name "MotionSensor"; model contains "SZ-PIR04N": 1 entries 28 found, then type 0)"},
    {R"({"clusters": [[1280, 1], [1283, 1]]})",
     67,
     "ZigbeeCamImage #1",
     {{3, 1}, {12, 1}, {9, 1}, {128, 0}, {129, 0}, {130, 0}, {131, 0}},
     {},
     "0x0500 on endpoint 1: IAS zone; a camera, for 0x0503 comes next; entries 3, 12, 9, 128, 129, 130, 131; type 67, "
     R"(name "ZigbeeCamImage #1")"},
    {R"({"clusters": [[257, 1], [1280, 1], [1284, 1]]})",
     28,
     "ZigbeeDoorLock #1",
     {{23, 1}},
     {},
     "0x0500 on endpoint 1: IAS zone; ignored, for 0x0504 comes next"},
    {R"({"clusters": [[1030, 1], [1280, 1]], "manufacturer": "NYCE", "model": "3041"})",
     24,
     "OccupancySensor #1",
     {{3, 1}},
     {},
     "0x0500 on endpoint 1: IAS zone; ignored, the device is of type 24 already"},
    {R"({"clusters": [[1026, 1]], "model": "SML001"})",
     60,
     "GenericDevice #1",
     {{25, 1}},
     {},
     R"(undecided at the end: type 60, name "GenericDevice")"},
    {R"({"clusters": [[0, 1], [514, 1]], "type": 7})",
     7,
     "UnknownDevice #1",
     {{39, 1}, {40, 1}},
     {},
     "0x0202 on endpoint 1: fan control; entries 39, 40; decides nothing"},
    {R"({"endpoints": [{"endpoint": 3, "clusters": ["0x0006"]}, {"endpoint": 4, "clusters": [6]}]})",
     43,
     "MultiSwitch #1",
     {{1, 3}, {1, 4}},
     {},
     R"(0x0006 on endpoint 4: on/off; entries 1; otherwise: name "MultiSwitch", type 43)"},
    {R"({"clusters": [[65535, 1], [6, 1]]},)",
     60,
     "GenericDevice #1",
     {},
     {},
     "0xFFFF ends the list of clusters; ignored behind it: 1"},
    {R"({"clusters": [], "model": "1234567890123456789012"})",
     60,
     "GenericDevice #1",
     {},
     {},
     R"(model cut to the 21 bytes that fit: "123456789012345678901")"},
};

const Kind kZwaveKinds[] = {
    {R"({"generic": 16, "specific": 1, "classes": [37, 50], "values": [[37, 0, 1]]})",
     45,
     "MeterSwitch #1",
     {},
     {43, 45},
     "log: cmd matched"},
    {R"({"generic": 16, "specific": 1, "classes": ["0x25"], "values": [[37, 0, 1]]})",
     1,
     "BinarySwitch #1",
     {},
     {42, 1, 43},
     "values ignored: only a generic device has an index table"},
    {R"({"generic": 161, "specific": 6})",
     0,
     "UnknownDevice #1",
     {},
     {},
     "log: Generic:zw_Alarm_Sensor , Specific:AS_Basic_Routing_Smoke_Sensor"},
    {R"({"generic": 17, "specific": 1, "classes": [113, 38], "values": [[38, 0, 2], [113, 1, 1], [32, 0, 1]]})",
     60,
     "GenericDevice #1",
     {{17, 2}, {14, 1}},
     {55, 52, 41},
     "to choose from: by the capabilities that the values raised: BasicFlag, MultilevelFlag"},
    {R"({"generic": 8, "specific": 1, "values": [[67, 1, 1]]})",
     60,
     "GenericDevice #1",
     {{37, 1}},
     {54, 46},
     "to choose from: by the capabilities that the values raised: ZwAcExtFlag"},
    {R"({"generic": 255, "values": [[48, 0, 1], [113, 3, 1]]})",
     60,
     "GenericDevice #1",
     {{2, 1}},
     {39, 11, 37, 36, 55, 42},
     "log: GenericDevice: Enum is not defined for : cmdclass 113 ind 3"},
    {R"({"generic": 3, "values": [[113, 0, 1], [37, 0, 1]]})",
     60,
     "GenericDevice #1",
     {},
     {},
     "the first value has no index type: the table begins with its end, what follows is not seen"},
};

std::vector<std::vector<int>> indexesOf(const Json& classified, const char* place) {
  std::vector<std::vector<int>> indexes;
  for (const Json& index : classified.at("indexes")) {
    EXPECT_EQ(index.at("number"), indexes.size() + 1);
    indexes.push_back({index.at("type"), index.at(place)});
  }
  return indexes;
}

std::vector<int> choicesOf(const Json& classified) {
  std::vector<int> types;
  for (const Json& choice : classified.at("choices")) types.push_back(choice.at("number"));
  return types;
}

void expectKind(const Kind& kind, const char* radio, const char* place) {
  SCOPED_TRACE(kind.description);
  const Json classified = classifiedJson(kind.description);
  ASSERT_TRUE(classified.at("classified"));
  EXPECT_EQ(classified.at("radio"), radio);
  EXPECT_EQ(classified.at("type").at("number"), kind.type);
  EXPECT_EQ(classified.at("name"), kind.name);
  EXPECT_EQ(indexesOf(classified, place), kind.indexes);
  EXPECT_EQ(choicesOf(classified), kind.choices);
  const Json& reasons = classified.at("why");
  EXPECT_NE(std::find(reasons.begin(), reasons.end(), kind.because), reasons.end()) << reasons.dump(1);
}

TEST(Classify, KnowsEveryKindOfZigbeeDevice) {
  for (const Kind& kind : kZigbeeKinds) expectKind(kind, "ZigBee", "endpoint");
}

TEST(Classify, KnowsEveryKindOfZwaveNode) {
  for (const Kind& kind : kZwaveKinds) expectKind(kind, "Z-Wave", "instance");
}

TEST(Classify, LeavesTheTypeItselfOutOfWhatMayBeChosenInstead) {
  const std::pair<const char*, const char*> rows[] = {
      {R"({"generic": 16, "specific": 1, "classes": [37, 50], "values": [[37, 0, 1]]})", "MultiSwitch"},
      {R"({"clusters": [[1280, 7]], "zone_type": 0})", "StandardWarningDevice, KeyFob"},
      {R"({"clusters": [[6, 1]]})", "none"},
  };
  for (const auto& [description, others] : rows) {
    const std::string answer = classify(description).output;
    const std::string line = "\nMay be chosen instead: " + std::string(others) + "\n";
    EXPECT_NE(answer.find(line), std::string::npos) << answer;
  }
}

TEST(Classify, SaysWhyADeviceIsNotClassified) {
  EXPECT_EQ(classifiedJson(R"({"clusters": [[6, 1], ["0x0B04", 1], [8, 1]]})"), Json::parse(R"({
      "radio": "ZigBee", "classified": false, "why": [
      "0x0006 on endpoint 1: on/off; entries 1; type is not 1: name \"BinarySwitch\", type 1",
      "0x0B04 on endpoint 1: electrical measurement; entries 86, 52, 53, 54; manufacturer is not \"OSRAM\" and measured values missing: classification fails"]})"));
  EXPECT_EQ(classifiedJson(R"({"generic": 16, "basic": 0, "node": 9})"), Json::parse(R"({
      "radio": "Z-Wave", "classified": false, "why": [
      "log: node 9 Supported Command Classes:", "log: BasicType is 0,so skipping Device addition"]})"));
  EXPECT_NE(classify(R"({"generic": 16, "basic": 0})").output.find("\nNot classified: the add would fail.\nWhy:\n"),
            std::string::npos);
}

TEST(Classify, SaysWhichEntriesFindNoRoom) {
  Json clusters = Json::array();
  for (int i = 0; i < 6; ++i) clusters.push_back({513, 1});
  const Json classified = classifiedJson(Json{{"clusters", clusters}}.dump());
  EXPECT_EQ(classified.at("indexes").size(), 29U);
  EXPECT_EQ(classified.at("why").at(5),
            "0x0201 on endpoint 1: thermostat; entries 35, 36, 37, 38, 25, of which there is room for 35, 36, 37, 38; "
            "otherwise: name \"Thermostat\", type 7");
}

TEST(Classify, LeavesNothingBehindAndTouchesNoDatabase) {
  writeFile(kDatabase, "not even a database");
  EXPECT_EQ(classify(R"({"clusters": [[6, 1]]})").status, 0);
  EXPECT_EQ(readFile(kDatabase), "not even a database");
  const auto isOurs = [](const auto& entry) { return entry.path().filename().string().starts_with("tembra-"); };
  EXPECT_EQ(std::ranges::count_if(std::filesystem::directory_iterator("/tmp"), isOurs), 0);
}

TEST(Classify, ExplainsEveryClusterOfTheSimulatedDevices) {
  const Json catalogue = Json::parse(readFile(TEMBRA_CATALOGUE "/zigbee.json")).at("devices");
  EXPECT_GE(catalogue.size(), 20U);
  for (const Json& device : catalogue) {
    const Json classified = classifiedJson(device.dump());
    const Json& reasons = classified.at("why");
    const auto explained = std::ranges::count_if(
        reasons, [](const Json& reason) { return reason.get<std::string>().find(" on endpoint ") == 6; });
    const auto clusters = static_cast<std::ptrdiff_t>(device.at("clusters").size());
    const bool whole = classified.at("classified");
    EXPECT_TRUE(whole ? explained == clusters : explained > 0 && explained < clusters) << device.at("label");
  }
}

TEST(Classify, KnowsEverySimulatedNode) {
  const Json catalogue = Json::parse(readFile(TEMBRA_CATALOGUE "/zwave.json")).at("devices");
  EXPECT_GE(catalogue.size(), 20U);
  for (const Json& device : catalogue) {
    EXPECT_EQ(classifiedJson(device.dump()).at("classified"), device.at("basic") != 0) << device.at("label");
  }
}

}  // namespace
}  // namespace tembra::test
