#include "devices.h"
#include "offsets.h"

namespace oracle {
namespace {

constexpr int kEndOfClusters = 0xFFFF;
constexpr char kZone[] = "libTembraAssoc:ias zone cluster";
constexpr char kNoMaker[] = "libTembraAssoc:Manufacturer name received:";
constexpr char kMotion[] = "libTembraAssoc:Detected as a motion sensor";

void setWord(Record<444>& record, std::size_t offset, int word) {
  record.setByte(offset, word & 0xFF);
  record.setByte(offset + 1, word >> 8);
}

const std::vector<ZigbeeDevice> kZigbeeDevices = {
    {.name = "on/off plug",
     .clusters = {{0x0006, 1}},
     .type = 1,
     .names = {"BinarySwitch"},
     .entries = {{1, 1}},
     .counted = 1},
    {.name = "dimmer",
     .clusters = {{0x0006, 1}, {0x0008, 1}},
     .type = 4,
     .names = {"BinarySwitch", "MultilevelSwitchOnOff"},
     .entries = {{1, 1}, {18, 1}},
     .counted = 2},
    {.name = "colour lamp",
     .clusters = {{0x0006, 11}, {0x0008, 11}, {0x0300, 11}},
     .type = 32,
     .names = {"BinarySwitch", "MultilevelSwitchOnOff", "ColorDimmableLight"},
     .entries = {{1, 11}, {18, 11}, {31, 11}, {32, 11}, {33, 11}},
     .counted = 3},
    {.name = "two switches",
     .clusters = {{0x0006, 1}, {0x0006, 2}},
     .type = 43,
     .names = {"BinarySwitch", "MultiSwitch"},
     .entries = {{1, 1}, {1, 2}},
     .counted = 2},
    {.name = "thermostat",
     .clusters = {{0x0201, 1}, {0x0202, 1}},
     .maker = "Zen Within",
     .model = "Zen-01",
     .type = 62,
     .names = {"Zen Thermostat"},
     .entries = {{35, 1}, {36, 1}, {37, 1}, {38, 1}, {25, 1}, {39, 1}, {40, 1}},
     .counted = 1},
    {.name = "door lock",
     .clusters = {{0x0101, 2}},
     .type = 28,
     .names = {"ZigbeeDoorLock"},
     .entries = {{23, 2}},
     .counted = 1},
    {.name = "contact",
     .clusters = {{0x0500, 1}},
     .zone = 0x0015,
     .type = 12,
     .classifiedType = 12,
     .names = {"ContactSwitch"},
     .entries = {{4, 1}, {12, 1}, {9, 1}},
     .counted = 1,
     .lines = {kZone, kNoMaker, "libTembraAssoc:Device associated:ContactSwitch "}},
    {.name = "motion sensor",
     .clusters = {{0x0500, 1}},
     .zone = 0x000D,
     .type = 11,
     .classifiedType = 11,
     .names = {"MotionSensor"},
     .entries = {{3, 1}, {12, 1}, {9, 1}},
     .counted = 1,
     .lines = {kZone, kNoMaker, "libTembraAssoc:Device associated:MotionSensor ", kMotion}},
    {.name = "control panel",
     .clusters = {{0x0500, 7}},
     .maker = "NYCE",
     .zone = 0x0000,
     .type = 10,
     .classifiedType = 10,
     .names = {"StandardCIE"},
     .entries = {{2, 7}, {12, 7}, {9, 7}},
     .counted = 1,
     .lines = {kZone, "libTembraAssoc:Manufacturer name received:NYCE",
               "libTembraAssoc:Device associated:StandardCIE "}},
    {.name = "water sensor",
     .clusters = {{0x0500, 1}},
     .zone = 0x002A,
     .type = 14,
     .classifiedType = 14,
     .names = {"FloodSensor"},
     .entries = {{6, 1}, {12, 1}, {9, 1}},
     .counted = 1,
     .lines = {kZone, kNoMaker, "libTembraAssoc:Device associated:WaterSensor "}},
    {.name = "key fob",
     .clusters = {{0x0500, 1}},
     .zone = 0x0115,
     .type = 19,
     .classifiedType = 19,
     .names = {"KeyFob"},
     .entries = {{24, 1}, {10, 1}, {11, 1}},
     .counted = 1,
     .lines = {kZone, kNoMaker, "libTembraAssoc:Device associated:KeyFob "}},
    {.name = "small smoke detector",
     .clusters = {{0x0500, 2}},
     .model = "MiniSD",
     .zone = 0x0028,
     .type = 60,
     .classifiedType = 11,
     .names = {"FireSensor", "GenericDevice"},
     .entries = {{3, 2}, {12, 2}, {9, 2}},
     .counted = 1,
     .lines = {kZone, kNoMaker, "libTembraAssoc:Mini smoke detector found",
               "libTembraAssoc:Device associated:FireSensor ", kMotion}},
    {.name = "camera",
     .clusters = {{0x0500, 1}, {0x0503, 1}},
     .zone = 0x0015,
     .type = 67,
     .names = {"ZigbeeCamImage"},
     .entries = {{3, 1}, {12, 1}, {9, 1}, {128, -1}, {129, -1}, {130, -1}, {131, -1}},
     .counted = 0,
     .lines = {kZone, kNoMaker, "libTembraAssoc:Found 503 cluster 1", "libTembraAssoc:Found 503 device 8"}},
    {.name = "metering switch",
     .clusters = {{0x0006, 1}, {0x0B04, 3}},
     .checks = {1, 1, 1},
     .type = 22,
     .names = {"BinarySwitch", "SmartACSwitch"},
     .entries = {{1, 1}, {86, 3}, {52, 3}, {53, 3}, {54, 3}},
     .endpointsBehind = 9,
     .counted = 2},
    {.name = "metering switch without measured values",
     .clusters = {{0x0006, 1}, {0x0B04, 3}},
     .result = -1,
     .type = 1,
     .names = {"BinarySwitch"},
     .entries = {{1, 1}, {86, 3}, {52, 3}, {53, 3}, {54, 3}},
     .endpointsBehind = 9},
    {.name = "own plug",
     .clusters = {{0x0006, 1}, {0x0B04, 1}},
     .maker = "Dravotek Ltd.",
     .productWords = {0x1002, 0x5EC0},
     .type = 50,
     .names = {"BinarySwitch", "Tobble Plug"},
     .entries = {{1, 1}, {86, 1}, {52, 1}, {53, 1}, {54, 1}},
     .endpointsBehind = 9,
     .counted = 2,
     .lines = {"libTembraAssoc:Manu name Dravotek Ltd. \n"}},
    {.name = "nobody knows it", .clusters = {{0x0020, 1}}, .type = 60, .names = {"GenericDevice"}},
    {.name = "nobody knows it, but the server named a type", .clusters = {{0x0020, 1}}, .preset = 33, .type = 33},
};

}  // namespace

const std::vector<ZigbeeDevice>& zigbeeDevices() { return kZigbeeDevices; }

Record<444> ZigbeeDevice::description() const {
  constexpr std::size_t kChecks[] = {228, 232, 240};
  constexpr std::size_t kWords[] = {292, 294};
  Record<444> record;
  std::size_t at = kZigbeeClusters;
  for (const ZigbeeCluster& cluster : clusters) {
    setWord(record, at, cluster.id);
    setWord(record, at + 2, cluster.endpoint);
    at += 4;
  }
  setWord(record, at, kEndOfClusters);
  record.setText(maker, kZigbeeMaker, 80);
  record.setByte(kZigbeeType, preset);
  setWord(record, kZigbeeZone, zone);
  for (std::size_t i = 0; i < checks.size(); ++i) setWord(record, kChecks[i], checks[i]);
  for (std::size_t i = 0; i < productWords.size(); ++i) setWord(record, kWords[i], productWords[i]);
  record.setText(model, kZigbeeModel, 22);
  return record;
}

const ZigbeeDevice* find(const Record<444>& description) {
  for (const ZigbeeDevice& device : kZigbeeDevices) {
    const Record<444> known = device.description();
    const bool same = std::equal(description.bytes.begin() + kZigbeeClusters,
                                 description.bytes.begin() + kZigbeeIndexCount, known.bytes.begin() + kZigbeeClusters);
    if (same) return &device;
  }
  return nullptr;
}

}  // namespace oracle
