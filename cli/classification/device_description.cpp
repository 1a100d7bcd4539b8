#include "cli/classification/device_description.h"

#include "cli/classification/device_description_members.h"
#include "words/json_text.h"

namespace tembra::cli {
namespace {

constexpr char kBlanks[] = " \t\r\n";

// A line of a list of devices has a comma behind it.
std::string withoutComma(const std::string& text) {
  const auto last = text.find_last_not_of(kBlanks);
  return last != std::string::npos && text[last] == ',' ? text.substr(0, last) : text;
}

nlohmann::json parseDevice(const std::string& text) {
  if (text.find_first_not_of(kBlanks) == std::string::npos) refuseDescription("is empty");
  try {
    nlohmann::json device = words::parseJson(withoutComma(text));
    if (!device.is_object()) refuseDescription("is no JSON object (one device, not a list of them)");
    return device;
  } catch (const words::JsonFault& fault) {
    refuseDescription(fault.what());
  }
}

}  // namespace

DeviceDescription readDescription(const std::string& text) {
  const nlohmann::json device = parseDevice(text);
  DeviceDescription description;
  if (device.contains("generic")) {
    description.record = readZwaveDescription(device, description.remarks);
  } else if (device.contains("clusters") || device.contains("endpoints")) {
    description.record = readZigbeeDescription(device, description.remarks);
  } else {
    refuseDescription(R"(has neither "generic" (Z-Wave) nor "clusters" or "endpoints" (ZigBee))");
  }
  return description;
}

}  // namespace tembra::cli
