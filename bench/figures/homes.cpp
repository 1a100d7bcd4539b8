#include "figures/homes.h"

#include <depot.h>
#include <tembra/records.h>
#include <tembra/vocabulary.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <stdexcept>

namespace bench {
namespace {

constexpr int kFirstId = 1;

void put(DEPOT* depot, const std::string& key, const void* value, std::size_t size) {
  const auto* bytes = static_cast<const char*>(value);
  if (dpput(depot, key.c_str(), -1, bytes, static_cast<int>(size), DP_DOVER) == 0) {
    throw std::runtime_error("the database of a home cannot be written");
  }
}

DeviceRecord describe(int id) {
  DeviceRecord device{};
  device.id = id;
  std::snprintf(device.name, sizeof device.name, "Device %d", id);
  const int kind = id % 10;
  device.radioKind = kind < 4 ? RADIO_ZWAVE : kind < 8 ? 1 : RADIO_IP;
  if (device.radioKind == RADIO_ZWAVE) device.zwaveNode = static_cast<unsigned>(id);
  if (device.radioKind == 1) device.zigbeeAddress = static_cast<unsigned>(id);
  std::snprintf(device.typeName, sizeof device.typeName, "%s", device.radioKind == RADIO_IP ? "HueLamp" : "Siren");
  return device;
}

// Value 1 of a bulb is its bridge, value 9 the bridge's user; those of others are as good as any.
void putIndexes(DEPOT* depot, int id) {
  for (int index = 1; index <= kIndexesEach; ++index) {
    IndexRecord record{};
    std::snprintf(record.value, sizeof record.value, "%s", index == 1 ? "02a1b2fffe0a0001" : "user-of-the-bridge");
    std::string key = std::to_string(id);
    key.append(".").append(std::to_string(index));
    put(depot, key, &record, sizeof record);
  }
}

}  // namespace

Home::Home(const std::string& path, int devices) : path_(path) {
  DEPOT* depot = dpopen(path.c_str(), DP_OWRITER | DP_OCREAT | DP_OTRUNC, -1);
  if (depot == nullptr) throw std::runtime_error("the database of a home cannot be made");
  for (int id = kFirstId; id < kFirstId + devices; ++id) {
    const DeviceRecord device = describe(id);
    put(depot, std::to_string(id), &device, sizeof device);
    putIndexes(depot, id);
  }
  const std::string next = std::to_string(kFirstId + devices);
  put(depot, "NextDevid", next.data(), next.size());
  put(depot, "Version", "1", 1);
  if (dpclose(depot) == 0) throw std::runtime_error("the database of a home cannot be closed");
}

Home::~Home() { std::remove(path_.c_str()); }

}  // namespace bench
