#include "sim/zigbee/descriptions.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <iterator>

#include "sim/core/record_bytes.h"

namespace tembra::sim {

ZbDeviceInfo bareDevice(unsigned short address, int status) {
  ZbDeviceInfo description{};
  description.shortAddress = address;
  description.msgCode = static_cast<unsigned char>(status);
  return description;
}

ZbDeviceInfo describedDevice(unsigned short address, int status, const ZigbeeDevice& device) {
  constexpr ZbClusterEntry endOfClusters{0xFFFF, 0};
  ZbDeviceInfo description = bareDevice(address, status);
  *std::copy(device.clusters.begin(), device.clusters.end(), std::begin(description.clusters)) = endOfClusters;
  setText(description.manufacturer, device.manufacturer);
  setText(description.model, device.model);
  description.zoneType = device.zoneType;
  description.acCheckA = device.acChecks[0];
  description.acCheckB = device.acChecks[1];
  description.acCheckC = device.acChecks[2];
  description.productWordA = device.productWords[0];
  description.productWordB = device.productWords[1];
  return description;
}

std::string addressText(unsigned short address) {
  std::array<char, sizeof "address 0x1a01"> text{};
  std::snprintf(text.data(), text.size(), "address 0x%04x", address);
  return text.data();
}

}  // namespace tembra::sim
