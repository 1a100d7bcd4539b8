#include "sim/home.h"

#include <nlohmann/json.hpp>

namespace tembra::sim {

Home Home::load(const std::filesystem::path& folder, const std::vector<std::filesystem::path>& files) {
  Home home{ZwaveCatalogue::load(folder), ZigbeeCatalogue::load(folder)};
  for (const ZigbeeDevice& device : home.zigbee.devices()) {
    require(home.zwave.find(device.label) == nullptr,
            "the catalogues in " + folder.string() + " both have a device called " + device.label);
  }
  for (const std::filesystem::path& file : files) home.add(file);
  return home;
}

void Home::add(const std::filesystem::path& file) {
  Home own;
  readCatalogue(file, [&own](const nlohmann::json& entry) {
    const bool isZwave = entry.contains("generic");
    const std::string label = labelOf(entry);
    require((isZwave ? own.zigbee.find(label) == nullptr : own.zwave.find(label) == nullptr),
            "there are two devices called " + label);
    isZwave ? own.zwave.addEntry(entry) : own.zigbee.addEntry(entry);
  });
  for (const ZwaveDevice& device : own.zwave.devices()) {
    zigbee.remove(device.label);
    zwave.put(device);
  }
  for (const ZigbeeDevice& device : own.zigbee.devices()) {
    zwave.remove(device.label);
    zigbee.put(device);
  }
}

bool Home::has(std::string_view name) const {
  return name == kHueButton || zwave.find(name) != nullptr || zigbee.find(name) != nullptr;
}

std::string Home::labels() const { return zwave.labels() + ", " + zigbee.labels() + ", " + std::string(kHueButton); }

}  // namespace tembra::sim
