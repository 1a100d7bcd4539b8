#include "class_names.h"

#include <algorithm>
#include <cctype>
#include <iterator>
#include <map>
#include <string>
#include <vector>

namespace tembra::words {
namespace {

struct Named {
  int number;
  const char* name;       ///< in the standard
  const char* otherName;  ///< an older name, or that of another tool; null: none
};

constexpr Named kCommandClasses[] = {
    {0x20, "Basic", nullptr},
    {0x21, "Controller Replication", nullptr},
    {0x22, "Application Status", nullptr},
    {0x23, "Zip", "Zip Services"},
    {0x24, "Security Panel Mode", "Zip Server"},
    {0x25, "Binary Switch", nullptr},
    {0x26, "Multilevel Switch", nullptr},
    {0x27, "All Switch", nullptr},
    {0x28, "Binary Toggle Switch", nullptr},
    {0x29, "Multilevel Toggle Switch", nullptr},
    {0x2A, "Chimney Fan", nullptr},
    {0x2B, "Scene Activation", nullptr},
    {0x2C, "Scene Actuator Configuration", "Scene Actuator Conf"},
    {0x2D, "Scene Controller Configuration", "Scene Controller Conf"},
    {0x2E, "Security Panel Zone", "Zip Client"},
    {0x2F, "Security Panel Zone Sensor", "Zip Adv Services"},
    {0x30, "Binary Sensor", nullptr},
    {0x31, "Multilevel Sensor", nullptr},
    {0x32, "Meter", nullptr},
    {0x33, "Color Switch", "Zip Adv Server"},
    {0x34, "Network Management Inclusion", "Zip Adv Client"},
    {0x35, "Pulse Meter", nullptr},
    {0x36, "Basic Tariff Information", nullptr},
    {0x37, "HRV Status", nullptr},
    {0x38, "Thermostat Heating", nullptr},
    {0x39, "HRV Control", nullptr},
    {0x3A, "Demand Control Plan Configuration", nullptr},
    {0x3B, "Demand Control Plan Monitor", nullptr},
    {0x3C, "Meter Table Configuration", nullptr},
    {0x3D, "Meter Table Monitor", nullptr},
    {0x3E, "Meter Table Push Configuration", nullptr},
    {0x3F, "Prepayment", nullptr},
    {0x40, "Thermostat Mode", nullptr},
    {0x41, "Prepayment Encapsulation", nullptr},
    {0x42, "Thermostat Operating State", nullptr},
    {0x43, "Thermostat Setpoint", nullptr},
    {0x44, "Thermostat Fan Mode", nullptr},
    {0x45, "Thermostat Fan State", nullptr},
    {0x46, "Climate Control Schedule", nullptr},
    {0x47, "Thermostat Setback", nullptr},
    {0x48, "Rate Table Configuration", nullptr},
    {0x49, "Rate Table Monitor", nullptr},
    {0x4A, "Tariff Table Configuration", nullptr},
    {0x4B, "Tariff Table Monitor", nullptr},
    {0x4C, "Door Lock Logging", nullptr},
    {0x4D, "Network Management Basic Node", nullptr},
    {0x4E, "Schedule Entry Lock", nullptr},
    {0x50, "Basic Window Covering", nullptr},
    {0x51, "Move To Position Window Covering", "MTP Window Covering"},
    {0x52, "Network Management Proxy", nullptr},
    {0x53, "Schedule", nullptr},
    {0x54, "Network Management Primary", nullptr},
    {0x55, "Transport Service", nullptr},
    {0x56, "CRC-16 Encapsulation", "CRC-16 Encap"},
    {0x57, "Application Capability", nullptr},
    {0x59, "Association Group Information", "Association Grp Info"},
    {0x5A, "Device Reset Locally", nullptr},
    {0x5B, "Central Scene", nullptr},
    {0x5C, "IP Association", nullptr},
    {0x5D, "Anti-Theft", "Antitheft"},
    {0x5E, "Z-Wave Plus Info", "Zwaveplus Info"},
    {0x60, "Multi Channel", "Multi Instance"},
    {0x62, "Door Lock", nullptr},
    {0x63, "User Code", nullptr},
    {0x64, "Humidity Control Setpoint", nullptr},
    {0x66, "Barrier Operator", nullptr},
    {0x67, "Network Management Installation And Maintenance", nullptr},
    {0x69, "Mailbox", nullptr},
    {0x6A, "Window Covering", nullptr},
    {0x6B, "Irrigation", nullptr},
    {0x6C, "Supervision", nullptr},
    {0x6D, "Humidity Control Mode", nullptr},
    {0x6E, "Humidity Control Operating State", nullptr},
    {0x6F, "Entry Control", nullptr},
    {0x70, "Configuration", nullptr},
    {0x71, "Notification", "Alarm"},
    {0x72, "Manufacturer Specific", nullptr},
    {0x73, "Powerlevel", nullptr},
    {0x74, "Inclusion Controller", nullptr},
    {0x75, "Protection", nullptr},
    {0x76, "Lock", nullptr},
    {0x77, "Node Naming And Location", "Node Naming"},
    {0x78, "Node Provisioning", nullptr},
    {0x79, "Sound Switch", nullptr},
    {0x7A, "Firmware Update Meta Data", "Firmware Update MD"},
    {0x7B, "Grouping Name", nullptr},
    {0x7C, "Remote Association Activation", "Remote Association Activate"},
    {0x7D, "Remote Association Configuration", "Remote Association"},
    {0x80, "Battery", nullptr},
    {0x81, "Clock", nullptr},
    {0x82, "Hail", nullptr},
    {0x83, "User Credential", nullptr},
    {0x84, "Wake Up", nullptr},
    {0x85, "Association", nullptr},
    {0x86, "Version", nullptr},
    {0x87, "Indicator", nullptr},
    {0x88, "Proprietary", nullptr},
    {0x89, "Language", nullptr},
    {0x8A, "Time", nullptr},
    {0x8B, "Time Parameters", nullptr},
    {0x8C, "Geographic Location", nullptr},
    {0x8D, "Composite", nullptr},
    {0x8E, "Multi Channel Association", "Multi Instance Association"},
    {0x8F, "Multi Command", "Multi Cmd"},
    {0x90, "Energy Production", nullptr},
    {0x91, "Manufacturer Proprietary", nullptr},
    {0x92, "Screen Meta Data", "Screen MD"},
    {0x93, "Screen Attributes", nullptr},
    {0x94, "Simple AV Control", nullptr},
    {0x95, "AV Content Directory Meta Data", "AV Content Directory MD"},
    {0x96, "AV Renderer Status", nullptr},
    {0x97, "AV Content Search Meta Data", "AV Content Search MD"},
    {0x98, "Security", "Security 0"},
    {0x99, "AV Tagging Meta Data", "AV Tagging MD"},
    {0x9A, "IP Configuration", nullptr},
    {0x9B, "Association Command Configuration", nullptr},
    {0x9C, "Alarm Sensor", nullptr},
    {0x9D, "Alarm Silence", nullptr},
    {0x9E, "Sensor Configuration", nullptr},
    {0x9F, "Security 2", nullptr},
    {0xA0, "IR Repeater", nullptr},
    {0xA1, "Authentication", nullptr},
    {0xA2, "Authentication Media Write", nullptr},
    {0xA3, "Generic Schedule", nullptr},
    {0xEF, "Mark", nullptr},
    {0xF0, "Non Interoperable", nullptr},
};

constexpr Named kClusters[] = {
    {0x0000, "Basic", "genBasic"},
    {0x0001, "Power Configuration", "genPowerCfg"},
    {0x0002, "Device Temperature Configuration", "genDeviceTempCfg"},
    {0x0003, "Identify", "genIdentify"},
    {0x0004, "Groups", "genGroups"},
    {0x0005, "Scenes", "genScenes"},
    {0x0006, "On/Off", "genOnOff"},
    {0x0007, "On/Off Switch Configuration", "genOnOffSwitchCfg"},
    {0x0008, "Level Control", "genLevelCtrl"},
    {0x0009, "Alarms", "genAlarms"},
    {0x000A, "Time", "genTime"},
    {0x000B, "RSSI Location", "genRssiLocation"},
    {0x000C, "Analog Input", "genAnalogInput"},
    {0x000D, "Analog Output", "genAnalogOutput"},
    {0x000E, "Analog Value", "genAnalogValue"},
    {0x000F, "Binary Input", "genBinaryInput"},
    {0x0010, "Binary Output", "genBinaryOutput"},
    {0x0011, "Binary Value", "genBinaryValue"},
    {0x0012, "Multistate Input", "genMultistateInput"},
    {0x0013, "Multistate Output", "genMultistateOutput"},
    {0x0014, "Multistate Value", "genMultistateValue"},
    {0x0015, "Commissioning", "genCommissioning"},
    {0x0016, "Partition", "genPartition"},
    {0x0019, "OTA Upgrade", "genOta"},
    {0x001A, "Power Profile", "genPowerProfile"},
    {0x001B, "Appliance Control", "genApplianceCtrl"},
    {0x0020, "Poll Control", "genPollCtrl"},
    {0x0021, "Green Power", "greenPower"},
    {0x0100, "Shade Configuration", "closuresShadeCfg"},
    {0x0101, "Door Lock", "closuresDoorLock"},
    {0x0102, "Window Covering", "closuresWindowCovering"},
    {0x0103, "Barrier Control", "barrierControl"},
    {0x0200, "Pump Configuration and Control", "hvacPumpCfgCtrl"},
    {0x0201, "Thermostat", "hvacThermostat"},
    {0x0202, "Fan Control", "hvacFanCtrl"},
    {0x0203, "Dehumidification Control", "hvacDehumidificationCtrl"},
    {0x0204, "Thermostat User Interface Configuration", "hvacUserInterfaceCfg"},
    {0x0300, "Color Control", "lightingColorCtrl"},
    {0x0301, "Ballast Configuration", "lightingBallastCfg"},
    {0x0400, "Illuminance Measurement", "msIlluminanceMeasurement"},
    {0x0401, "Illuminance Level Sensing", "msIlluminanceLevelSensing"},
    {0x0402, "Temperature Measurement", "msTemperatureMeasurement"},
    {0x0403, "Pressure Measurement", "msPressureMeasurement"},
    {0x0404, "Flow Measurement", "msFlowMeasurement"},
    {0x0405, "Relative Humidity Measurement", "msRelativeHumidity"},
    {0x0406, "Occupancy Sensing", "msOccupancySensing"},
    {0x0408, "Soil Moisture Measurement", "msSoilMoisture"},
    {0x040D, "Carbon Dioxide Measurement", "msCO2"},
    {0x042A, "PM2.5 Measurement", "pm25Measurement"},
    {0x0500, "IAS Zone", "ssIasZone"},
    {0x0501, "IAS ACE", "ssIasAce"},
    {0x0502, "IAS WD", "ssIasWd"},
    {0x0702, "Metering", "seMetering"},
    {0x0B00, "Appliance Identification", "haApplianceIdentification"},
    {0x0B01, "Meter Identification", "haMeterIdentification"},
    {0x0B02, "Appliance Events and Alerts", "haApplianceEventsAlerts"},
    {0x0B03, "Appliance Statistics", "haApplianceStatistics"},
    {0x0B04, "Electrical Measurement", "haElectricalMeasurement"},
    {0x0B05, "Diagnostics", "haDiagnostic"},
    {0x1000, "Touchlink Commissioning", "touchlink"},
};

bool isPart(char c) { return std::isalnum(static_cast<unsigned char>(c)) != 0; }
char lower(char c) { return static_cast<char>(std::tolower(static_cast<unsigned char>(c))); }

std::string lettersOf(std::string_view name) {
  std::string letters;
  for (const char c : name) {
    if (isPart(c)) letters += lower(c);
  }
  return letters;
}

// The words in alphabetical order: "Binary Switch" and "SWITCH BINARY" are the same.
std::string wordsOf(std::string_view name) {
  std::vector<std::string> words(1);
  for (const char c : name) {
    if (isPart(c)) words.back() += lower(c);
    if (!isPart(c)) words.emplace_back();
  }
  std::erase(words, "");
  const bool hasPrefix = words.size() > 2 && words[0] == "command" && words[1] == "class";
  if (hasPrefix) words.erase(words.begin(), words.begin() + 2);
  std::ranges::sort(words);
  std::string text;
  for (const std::string& word : words) text += word + " ";
  return text;
}

using Numbers = std::map<std::string, int>;

template <std::size_t Count>
Numbers numbersOf(const Named (&rows)[Count], std::string (*key)(std::string_view)) {
  Numbers numbers;
  for (const Named& row : rows) {
    numbers.emplace(key(row.name), row.number);
    if (row.otherName != nullptr) numbers.emplace(key(row.otherName), row.number);
  }
  return numbers;
}

std::optional<int> find(const Numbers& numbers, const std::string& key) {
  const auto found = numbers.find(key);
  return found == numbers.end() ? std::nullopt : std::optional(found->second);
}

}  // namespace

std::optional<int> commandClassNumber(std::string_view name) {
  static const Numbers numbers = numbersOf(kCommandClasses, wordsOf);
  return find(numbers, wordsOf(name));
}

std::optional<int> clusterNumber(std::string_view name) {
  static const Numbers numbers = numbersOf(kClusters, lettersOf);
  return find(numbers, lettersOf(name));
}

const char* clusterName(int number) {
  const auto* const row = std::ranges::find(kClusters, number, &Named::number);
  return row == std::end(kClusters) ? nullptr : row->name;
}

}  // namespace tembra::words
