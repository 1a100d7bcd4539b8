#include "sim/ha/new_device.h"

#include <algorithm>

#include "sim/core/record_bytes.h"

namespace tembra::sim {
namespace {

// A value slot that has not been reported yet shows "0".
NewIndex unreported(std::size_t number, unsigned char type, unsigned char instance) {
  return {static_cast<int>(number), type, instance, "0"};
}

std::vector<NewIndex> indexesOf(const ZwNodeInfo& node) {
  std::vector<NewIndex> indexes;
  for (const ZwIndexEntry& entry : node.indexes) {
    if (entry.type == INDEX_NONE) break;
    indexes.push_back(unreported(indexes.size() + 1, entry.type, entry.instance));
  }
  return indexes;
}

std::vector<NewIndex> indexesOf(const ZbDeviceInfo& device) {
  std::vector<NewIndex> indexes;
  for (const ZbIndexEntry& entry :
       std::span(device.indexes).first(std::min<std::size_t>(device.indexCount, std::size(device.indexes)))) {
    indexes.push_back(unreported(indexes.size() + 1, entry.type, entry.endpoint));
  }
  return indexes;
}

}  // namespace

NewDevice newDeviceFrom(const ZwNodeInfo& node) {
  return {textIn(node.name), node.nodeId, 0, RADIO_ZWAVE, static_cast<DevType>(node.finalType), indexesOf(node)};
}

NewDevice newDeviceFrom(const ZbDeviceInfo& device) {
  return {textIn(device.name), 0, device.shortAddress, kRadioZigbee, static_cast<DevType>(device.devType),
          indexesOf(device)};
}

}  // namespace tembra::sim
