#include "sim/zwave/network.h"

#include <algorithm>

namespace tembra::sim {
namespace {

constexpr ZwaveNetwork::NodeId kFirstNode = 2;
constexpr ZwaveNetwork::NodeId kLastNode = 232;  // of a Z-Wave network

}  // namespace

// A controller goes on counting and comes back to freed ids only at the end of its range.
std::optional<ZwaveNetwork::NodeId> ZwaveNetwork::freeNode() const {
  constexpr int range = kLastNode - kFirstNode + 1;
  for (int step = 1; step <= range; ++step) {
    const auto node = static_cast<NodeId>(kFirstNode + (last_ - kFirstNode + step + range) % range);
    if (!nodes_.contains(node)) return node;
  }
  return std::nullopt;
}

std::optional<ZwaveNetwork::NodeId> ZwaveNetwork::join(std::string_view device) {
  if (const auto known = find(device)) return known;
  const auto node = freeNode();
  if (node) restore(*node, device);
  return node;
}

void ZwaveNetwork::restore(NodeId node, std::string_view device) {
  nodes_[node] = device;
  last_ = node;
}

std::optional<ZwaveNetwork::NodeId> ZwaveNetwork::find(std::string_view device) const {
  const auto entry =
      std::find_if(nodes_.begin(), nodes_.end(), [device](const auto& node) { return node.second == device; });
  if (entry == nodes_.end()) return std::nullopt;
  return entry->first;
}

std::string ZwaveNetwork::deviceOf(NodeId node) const {
  const auto entry = nodes_.find(node);
  return entry == nodes_.end() ? std::string() : entry->second;
}

}  // namespace tembra::sim
