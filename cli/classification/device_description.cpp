#include "cli/classification/device_description.h"

#include <algorithm>

#include "cli/classification/device_description_members.h"
#include "cli/words/texts.h"

namespace tembra::cli {
namespace {

constexpr char kBlanks[] = " \t\r\n";

// A line of a list of devices has a comma behind it.
std::string withoutComma(const std::string& text) {
  const auto last = text.find_last_not_of(kBlanks);
  return last != std::string::npos && text[last] == ',' ? text.substr(0, last) : text;
}

[[noreturn]] void refuseJson(const std::string& text, std::size_t at) {
  const std::string before = text.substr(0, at);
  const auto line = 1 + std::ranges::count(before, '\n');
  const std::size_t column = 1 + characters(before.substr(before.rfind('\n') + 1));
  refuseDescription("is no JSON text: see line " + std::to_string(line) + ", column " + std::to_string(column));
}

nlohmann::json parseDevice(const std::string& text) {
  if (text.find_first_not_of(kBlanks) == std::string::npos) refuseDescription("is empty");
  nlohmann::json device;
  try {
    device = nlohmann::json::parse(withoutComma(text));
  } catch (const nlohmann::json::parse_error& error) {
    refuseJson(text, error.byte == 0 ? 0 : error.byte - 1);
  } catch (const nlohmann::json::out_of_range&) {  // the parser's only one: no double holds the number
    refuseDescription("has a number that is too large");
  }
  const std::size_t nothing = text.find('\0');  // the parser would take it for the end
  if (nothing != std::string::npos) refuseJson(text, nothing);
  if (!device.is_object()) refuseDescription("is no JSON object (one device, not a list of them)");
  return device;
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
