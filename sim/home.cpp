#include "sim/home.h"

namespace tembra::sim {

Home Home::load(const std::filesystem::path& folder) {
  Home home{ZwaveCatalogue::load(folder), ZigbeeCatalogue::load(folder)};
  for (const ZigbeeDevice& device : home.zigbee.devices()) {
    require(home.zwave.find(device.label) == nullptr,
            "the catalogues in " + folder.string() + " both have a device called " + device.label);
  }
  return home;
}

bool Home::has(std::string_view name) const {
  return name == kHueButton || zwave.find(name) != nullptr || zigbee.find(name) != nullptr;
}

std::string Home::labels() const { return zwave.labels() + ", " + zigbee.labels() + ", " + std::string(kHueButton); }

}  // namespace tembra::sim
