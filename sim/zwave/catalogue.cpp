#include "sim/zwave/catalogue.h"

#include <nlohmann/json.hpp>

namespace tembra::sim {
namespace {

using nlohmann::json;

// The lists end with an end mark inside their fields.
constexpr std::size_t kMostClasses = sizeof ZwNodeInfo::commandClasses - 1;
constexpr std::size_t kMostValues = sizeof ZwNodeInfo::values / sizeof(ZwValueTriple) - 1;
constexpr int kClassListEnd = 0xFF;

unsigned char byteFrom(const json& value, int smallest, int largest) {
  return static_cast<unsigned char>(numberFrom(value, smallest, largest));
}

ZwValueTriple tripleFrom(const json& value) {
  require(value.is_array() && value.size() == 3, value.dump() + " is not [command class, index, instance]");
  return {byteFrom(value[0], 1, kClassListEnd), byteFrom(value[1], 0, 255), byteFrom(value[2], 0, 255)};
}

ZwaveDevice zwaveDeviceFrom(const json& entry) {
  ZwaveDevice device;
  device.label = labelOf(entry);
  device.description = textIn(entry, "description");
  device.basicClass = byteFrom(memberOf(entry, "basic"), 0, 255);
  device.genericClass = byteFrom(memberOf(entry, "generic"), 0, 255);
  device.specificClass = byteFrom(memberOf(entry, "specific"), 0, 255);
  for (const json& value : listIn(entry, "commandClasses")) {
    device.commandClasses.push_back(byteFrom(value, 1, kClassListEnd - 1));
  }
  for (const json& value : listIn(entry, "values")) device.values.push_back(tripleFrom(value));
  require(device.commandClasses.size() <= kMostClasses,
          "more than " + std::to_string(kMostClasses) + " command classes");
  require(device.values.size() <= kMostValues, "more than " + std::to_string(kMostValues) + " values");
  return device;
}

}  // namespace

ZwaveCatalogue ZwaveCatalogue::load(const std::filesystem::path& folder) {
  ZwaveCatalogue catalogue;
  readCatalogue(folder / "zwave.json", [&catalogue](const json& entry) { catalogue.addEntry(entry); });
  return catalogue;
}

void ZwaveCatalogue::addEntry(const json& entry) { add(zwaveDeviceFrom(entry)); }

}  // namespace tembra::sim
