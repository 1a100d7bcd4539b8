#include "sim/ha/new_device.h"

#include <algorithm>
#include <iterator>

#include "sim/core/record_bytes.h"

namespace tembra::sim {

NewDevice newDeviceFrom(const ZwNodeInfo& node) {
  const auto* const end = std::find_if(std::begin(node.indexes), std::end(node.indexes),
                                       [](const ZwIndexEntry& entry) { return entry.type == INDEX_NONE; });
  return {textIn(node.name),
          node.nodeId,
          0,
          RADIO_ZWAVE,
          static_cast<DevType>(node.finalType),
          {std::begin(node.indexes), end}};
}

NewDevice newDeviceFrom(const ZbDeviceInfo& device) {
  NewDevice result{textIn(device.name), 0, device.shortAddress, kRadioZigbee, static_cast<DevType>(device.devType), {}};
  const auto* const end =
      std::begin(device.indexes) + std::min<std::size_t>(device.indexCount, std::size(device.indexes));
  std::transform(std::begin(device.indexes), end, std::back_inserter(result.indexes), [](const ZbIndexEntry& entry) {
    return ZwIndexEntry{entry.type, entry.endpoint};
  });
  return result;
}

}  // namespace tembra::sim
