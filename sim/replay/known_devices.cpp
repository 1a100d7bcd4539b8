#include "sim/replay/known_devices.h"

#include "sim/core/record_bytes.h"
#include "sim/zigbee/descriptions.h"
#include "sim/zwave/node_blocks.h"

namespace tembra::sim {
namespace {

bool isDescription(std::span<const unsigned char> answer, const std::vector<unsigned char>& description) {
  return std::equal(answer.begin(), answer.end(), description.begin(), description.end());
}

// A second device of a label is "label#2".
void join(RadioNetwork& network, RadioNetwork::Address address, const std::string& label) {
  std::string name = label;
  for (int number = 2; network.find(name).value_or(address) != address; ++number) {
    name = label + "#" + std::to_string(number);
  }
  network.restore(address, name);
}

}  // namespace

std::string labelOf(const Home& home, Server server, std::span<const unsigned char> description) {
  if (server == Server::kZwave) {
    const auto node = recordFrom<ZwNodeInfo>(description).nodeId;
    for (const ZwaveDevice& device : home.zwave.devices()) {
      if (isDescription(description, bytesOf(describedNode(node, device)))) return device.label;
    }
  }
  if (server == Server::kZigbee) {
    const auto received = recordFrom<ZbDeviceInfo>(description);
    for (const ZigbeeDevice& device : home.zigbee.devices()) {
      if (isDescription(description, bytesOf(describedDevice(received.shortAddress, received.msgCode, device)))) {
        return device.label;
      }
    }
  }
  return "";
}

void joinDescribed(const Home& home, Server server, std::span<const unsigned char> description, RadioNetwork& zwave,
                   RadioNetwork& zigbee) {
  const std::string label = labelOf(home, server, description);
  if (label.empty()) return;
  if (server == Server::kZwave) join(zwave, recordFrom<ZwNodeInfo>(description).nodeId, label);
  if (server == Server::kZigbee) join(zigbee, recordFrom<ZbDeviceInfo>(description).shortAddress, label);
}

}  // namespace tembra::sim
