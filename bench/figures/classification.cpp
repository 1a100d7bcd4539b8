// Classification of the devices of the simulated router's catalogue.
#include <tembra/association.h>

#include <cstddef>
#include <vector>

#include "figures.h"
#include "rig/outside.h"
#include "sim/zigbee/descriptions.h"
#include "sim/zwave/node_blocks.h"

namespace bench {
namespace {

std::vector<ZbDeviceInfo> zigbeeDevices() {
  const auto catalogue = tembra::sim::ZigbeeCatalogue::load(TEMBRA_CATALOGUE);
  std::vector<ZbDeviceInfo> devices;
  for (const auto& device : catalogue.devices()) {
    devices.push_back(tembra::sim::describedDevice(0x1a01, tembra::sim::kStatusComplete, device));
  }
  return devices;
}

// Those of a kind that gets an index table.
std::vector<ZwNodeInfo> genericNodes(TembraAssociation& assoc) {
  const NoDatabase noDatabase;
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

template <typename Run>
std::size_t allocationsOf(Run run) {
  run();
  own_code::start();
  {
    const Inside inside;
    run();
  }
  own_code::stop();
  return own_code::allocations();
}

void addAllocations(Report& report, int number, const char* what, std::size_t allocations) {
  report.add({.number = number,
              .what = what,
              .unit = Unit::Count,
              .value = static_cast<double>(allocations),
              .limit = {},
              .most = 0});
}

}  // namespace

// A Z-Wave node's classification asks the database for an id first; that it does so without a database is measured,
// too, and taken off.
void measureClassification(const Effort& effort, Report& report) {
  TembraAssociation& assoc = *TembraAssociation::LCDAssocInit();
  const std::vector<ZbDeviceInfo> devices = zigbeeDevices();
  const std::vector<ZwNodeInfo> nodes = genericNodes(assoc);
  const auto zigbee = [&] {
    for (const ZbDeviceInfo& device : devices) {
      assoc.zbDevice = device;
      assoc.validate_DeviceType();
    }
  };
  const auto zwave = [&] {
    for (const ZwNodeInfo& node : nodes) {
      assoc.zwNodeRx = node;
      assoc.ZW_createDeviceType();
    }
  };
  const NoDatabase noDatabase;
  Comparison comparison(effort);
  comparison.repeat("ZigBee", zigbee);
  comparison.repeat("Z-Wave", zwave);
  comparison.repeat("id", [&] { assoc.calculateDevId(); });
  const std::map<std::string, double> seconds = comparison.run();
  const double zigbeeEach = seconds.at("ZigBee") / static_cast<double>(devices.size());
  const double zwaveEach = seconds.at("Z-Wave") / static_cast<double>(nodes.size()) - seconds.at("id");
  report.add({.number = 3,
              .what = "ZigBee classification, mean of the catalogue",
              .unit = Unit::Nanoseconds,
              .value = zigbeeEach * 1e9,
              .limit = {},
              .most = 400});
  addAllocations(report, 3, "allocations of it", allocationsOf(zigbee));
  report.add({.number = 4,
              .what = "Z-Wave classification with index table, no database",
              .unit = Unit::Nanoseconds,
              .value = zwaveEach * 1e9,
              .limit = {},
              .most = 1000});
  addAllocations(report, 4, "allocations of it", allocationsOf(zwave));
}

}  // namespace bench
