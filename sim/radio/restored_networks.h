// What the device list tells at a start.
#ifndef TEMBRA_SIM_RADIO_RESTORED_NETWORKS_H
#define TEMBRA_SIM_RADIO_RESTORED_NETWORKS_H

#include "sim/core/journal.h"
#include "sim/ha/device_list.h"
#include "sim/radio/network.h"

namespace tembra::sim {

/// The devices of an earlier run are still in the memory of the radios.
void restoreNetworks(const DeviceList& list, RadioNetwork& zwave, RadioNetwork& zigbee);

/// A replay begins with the same devices and the same next id.
void recordDatabase(const DeviceList& list, Journal& journal);

}  // namespace tembra::sim

#endif
