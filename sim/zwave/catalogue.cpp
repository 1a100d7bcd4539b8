#include "sim/zwave/catalogue.h"

#include <algorithm>
#include <fstream>
#include <nlohmann/json.hpp>
#include <stdexcept>

namespace tembra::sim {
namespace {

using nlohmann::json;

// The lists end with an end mark inside their fields.
constexpr std::size_t kMostClasses = sizeof ZwNodeInfo::commandClasses - 1;
constexpr std::size_t kMostValues = sizeof ZwNodeInfo::values / sizeof(ZwValueTriple) - 1;
constexpr std::size_t kLongestLabel = 24;
constexpr int kClassListEnd = 0xFF;

void require(bool condition, const std::string& sentence) {
  if (!condition) throw std::runtime_error(sentence);
}

unsigned char byteFrom(const json& value, int smallest, int largest) {
  require(value.is_number_integer(), value.dump() + " is not a number");
  const auto number = value.get<long long>();
  require(number >= smallest && number <= largest,
          value.dump() + " is not from " + std::to_string(smallest) + " to " + std::to_string(largest));
  return static_cast<unsigned char>(number);
}

ZwValueTriple tripleFrom(const json& value) {
  require(value.is_array() && value.size() == 3, value.dump() + " is not [command class, index, instance]");
  return {byteFrom(value[0], 1, kClassListEnd), byteFrom(value[1], 0, 255), byteFrom(value[2], 0, 255)};
}

std::string labelFrom(const json& value) {
  auto label = value.get<std::string>();
  const bool plain = label.find_first_not_of("abcdefghijklmnopqrstuvwxyz0123456789-") == std::string::npos;
  require(plain && !label.empty() && label.size() <= kLongestLabel && label.front() != '-',
          "a label has 1 to " + std::to_string(kLongestLabel) + " small letters, digits and hyphens");
  return label;
}

ZwaveDevice deviceFrom(const json& entry) {
  ZwaveDevice device;
  device.label = labelFrom(entry.at("label"));
  device.description = entry.at("description").get<std::string>();
  device.basicClass = byteFrom(entry.at("basic"), 0, 255);
  device.genericClass = byteFrom(entry.at("generic"), 0, 255);
  device.specificClass = byteFrom(entry.at("specific"), 0, 255);
  for (const json& value : entry.at("commandClasses")) {
    device.commandClasses.push_back(byteFrom(value, 1, kClassListEnd - 1));
  }
  for (const json& value : entry.at("values")) device.values.push_back(tripleFrom(value));
  require(device.commandClasses.size() <= kMostClasses,
          "more than " + std::to_string(kMostClasses) + " command classes");
  require(device.values.size() <= kMostValues, "more than " + std::to_string(kMostValues) + " values");
  return device;
}

json parsed(const std::filesystem::path& file) {
  std::ifstream stream(file);
  require(stream.good(), "cannot be read");
  return json::parse(stream);
}

}  // namespace

ZwaveCatalogue ZwaveCatalogue::load(const std::filesystem::path& folder) {
  const std::filesystem::path file = folder / "zwave.json";
  ZwaveCatalogue catalogue;
  std::string where;
  try {
    const json content = parsed(file);
    for (const json& entry : content.at("devices")) {
      where = " (device " + std::to_string(catalogue.devices_.size() + 1) + ")";
      catalogue.add(deviceFrom(entry));
    }
  } catch (const std::exception& failure) {
    throw std::runtime_error("the catalogue " + file.string() + where + ": " + failure.what());
  }
  return catalogue;
}

void ZwaveCatalogue::add(ZwaveDevice device) {
  require(find(device.label) == nullptr, "there are two devices called " + device.label);
  devices_.push_back(std::move(device));
}

const ZwaveDevice* ZwaveCatalogue::find(std::string_view name) const {
  const std::size_t mark = name.find('#');
  const bool numbered = mark != std::string_view::npos;
  const std::string_view number = numbered ? name.substr(mark + 1) : "1";
  constexpr std::size_t mostDigits = 4;
  if (number.empty() || number.size() > mostDigits) return nullptr;
  if (number.find_first_not_of("0123456789") != std::string_view::npos) return nullptr;
  const std::string_view label = name.substr(0, mark);
  const auto device = std::find_if(devices_.begin(), devices_.end(),
                                   [label](const ZwaveDevice& entry) { return entry.label == label; });
  return device == devices_.end() ? nullptr : &*device;
}

std::string ZwaveCatalogue::labels() const {
  std::string labels;
  for (const ZwaveDevice& device : devices_) labels.append(labels.empty() ? "" : ", ").append(device.label);
  return labels;
}

}  // namespace tembra::sim
