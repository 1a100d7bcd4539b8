// Classification of the devices of the simulated router's catalogue.
#include <tembra/association.h>

#include <cstddef>
#include <vector>

#include "figures.h"
#include "figures/catalogue.h"
#include "rig/outside.h"

namespace bench {
namespace {

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
              .unit = Unit::kCount,
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
  const std::vector<ZwNodeInfo> nodes = genericNodes();
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
              .unit = Unit::kNanoseconds,
              .value = zigbeeEach * 1e9,
              .limit = {},
              .most = 400});
  addAllocations(report, 3, "allocations of it", allocationsOf(zigbee));
  report.add({.number = 4,
              .what = "Z-Wave classification, index table, log lines formatted",
              .unit = Unit::kNanoseconds,
              .value = zwaveEach * 1e9,
              .limit = {},
              .most = 1000});
  addAllocations(report, 4, "allocations of it", allocationsOf(zwave));
}

}  // namespace bench
