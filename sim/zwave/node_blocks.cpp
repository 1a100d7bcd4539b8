#include "sim/zwave/node_blocks.h"

#include <algorithm>
#include <iterator>

namespace tembra::sim {

ZwNodeInfo bareNode(unsigned char node) {
  ZwNodeInfo block{};
  block.nodeId = node;
  return block;
}

ZwNodeInfo describedNode(unsigned char node, const ZwaveDevice& device) {
  constexpr unsigned char endOfClasses = 0xFF;
  ZwNodeInfo block = bareNode(node);
  *std::copy(device.commandClasses.begin(), device.commandClasses.end(), std::begin(block.commandClasses)) =
      endOfClasses;
  block.basicClass = device.basicClass;
  block.genericClass = device.genericClass;
  block.specificClass = device.specificClass;
  std::copy(device.values.begin(), device.values.end(), std::begin(block.values));
  return block;
}

}  // namespace tembra::sim
