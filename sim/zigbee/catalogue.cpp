#include "sim/zigbee/catalogue.h"

#include <iterator>
#include <nlohmann/json.hpp>

namespace tembra::sim {
namespace {

using nlohmann::json;

// The list ends with an end mark inside its field, a text with a NUL.
constexpr std::size_t kMostClusters = std::size(ZbDeviceInfo{}.clusters) - 1;
constexpr std::size_t kLongestManufacturer = sizeof ZbDeviceInfo::manufacturer - 1;
constexpr std::size_t kLongestModel = sizeof ZbDeviceInfo::model - 1;
constexpr int kEndOfClusters = 0xFFFF;
constexpr int kLastEndpoint = 254;

unsigned short wordFrom(const json& value) { return static_cast<unsigned short>(numberFrom(value, 0, 0xFFFF)); }

ZbClusterEntry clusterFrom(const json& value) {
  require(value.is_array() && value.size() == 2, value.dump() + " is not [cluster, endpoint]");
  return {static_cast<unsigned short>(numberFrom(value[0], 0, kEndOfClusters - 1)),
          static_cast<unsigned short>(numberFrom(value[1], 1, kLastEndpoint))};
}

std::string shortTextIn(const json& entry, const char* name, std::size_t longest) {
  std::string text = textIn(entry, name);
  require(text.size() <= longest, json(text).dump() + " is longer than " + std::to_string(longest) + " characters");
  return text;
}

// The words of a member that may be left out.
template <std::size_t N>
std::array<unsigned short, N> wordsFrom(const json& entry, const char* member) {
  std::array<unsigned short, N> words{};
  if (!entry.contains(member)) return words;
  const json& values = entry.at(member);
  require(values.is_array() && values.size() == N,
          std::string("\"").append(member) + "\" is not a list of " + std::to_string(N) + " numbers");
  for (std::size_t i = 0; i < N; ++i) words[i] = wordFrom(values[i]);
  return words;
}

ZigbeeDevice zigbeeDeviceFrom(const json& entry) {
  ZigbeeDevice device;
  device.label = labelOf(entry);
  device.description = textIn(entry, "description");
  device.manufacturer = shortTextIn(entry, "manufacturer", kLongestManufacturer);
  device.model = shortTextIn(entry, "model", kLongestModel);
  device.zoneType = entry.contains("zoneType") ? wordFrom(entry.at("zoneType")) : static_cast<unsigned short>(0);
  for (const json& value : listIn(entry, "clusters")) device.clusters.push_back(clusterFrom(value));
  require(device.clusters.size() <= kMostClusters, "more than " + std::to_string(kMostClusters) + " clusters");
  device.acChecks = wordsFrom<3>(entry, "acChecks");
  device.productWords = wordsFrom<2>(entry, "productWords");
  return device;
}

}  // namespace

ZigbeeCatalogue ZigbeeCatalogue::load(const std::filesystem::path& folder) {
  ZigbeeCatalogue catalogue;
  readCatalogue(folder / "zigbee.json", [&catalogue](const json& entry) { catalogue.addEntry(entry); });
  return catalogue;
}

void ZigbeeCatalogue::addEntry(const json& entry) { add(zigbeeDeviceFrom(entry)); }

}  // namespace tembra::sim
