#include "figures/catalogue.h"

#include "rig/outside.h"
#include "sim/zigbee/descriptions.h"
#include "sim/zwave/node_blocks.h"

namespace bench {

std::vector<ZbDeviceInfo> zigbeeDevices() {
  const auto catalogue = tembra::sim::ZigbeeCatalogue::load(TEMBRA_CATALOGUE);
  std::vector<ZbDeviceInfo> devices;
  for (const auto& device : catalogue.devices()) {
    devices.push_back(tembra::sim::describedDevice(0x1a01, ZIGBEE_INFO_COMPLETE, device));
  }
  return devices;
}

std::vector<ZwNodeInfo> genericNodes() {
  const NoDatabase noDatabase;
  TembraAssociation& assoc = *TembraAssociation::LCDAssocInit();
  const auto catalogue = tembra::sim::ZwaveCatalogue::load(TEMBRA_CATALOGUE);
  std::vector<ZwNodeInfo> nodes;
  for (const auto& device : catalogue.devices()) {
    assoc.zwNodeRx = tembra::sim::describedNode(5, device);
    if (assoc.ZW_createDeviceType() == 1 && assoc.classifiedType == DEVTYPE_GENERIC_DEVICE) {
      nodes.push_back(assoc.zwNodeRx);
    }
  }
  return nodes;
}

}  // namespace bench
