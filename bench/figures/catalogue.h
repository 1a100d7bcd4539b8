// What is classified: devices of the simulated router's catalogue, as its daemons describe them.
#ifndef TEMBRA_BENCH_FIGURES_CATALOGUE_H
#define TEMBRA_BENCH_FIGURES_CATALOGUE_H

#include <tembra/association.h>

#include <vector>

namespace bench {

/// All ZigBee devices.
std::vector<ZbDeviceInfo> zigbeeDevices();

/// The Z-Wave nodes that get an index table.
std::vector<ZwNodeInfo> genericNodes();

}  // namespace bench

#endif
