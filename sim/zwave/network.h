// The Z-Wave controller's memory: which node is which device.
#ifndef TEMBRA_SIM_ZWAVE_NETWORK_H
#define TEMBRA_SIM_ZWAVE_NETWORK_H

#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace tembra::sim {

class ZwaveNetwork {
 public:
  using NodeId = unsigned char;

  /// The node id of a device: the one it has, else a new one. Empty when every id is taken.
  std::optional<NodeId> join(std::string_view device);
  /// Takes over a node of an earlier run.
  void restore(NodeId node, std::string_view device);
  std::optional<NodeId> find(std::string_view device) const;
  /// Empty when the node is not in the network.
  std::string deviceOf(NodeId node) const;
  void forget(NodeId node) { nodes_.erase(node); }
  void clear() { nodes_.clear(); }
  const std::map<NodeId, std::string>& nodes() const { return nodes_; }

 private:
  std::optional<NodeId> freeNode() const;

  std::map<NodeId, std::string> nodes_;
  NodeId last_ = 1;  // node 1 is the controller itself
};

}  // namespace tembra::sim

#endif
