// The bulbs of added Hue bridges, as they stand in the device list.
#ifndef TEMBRA_SIM_HUE_LAMPS_H
#define TEMBRA_SIM_HUE_LAMPS_H

#include <string>

#include "sim/ha/device_list.h"
#include "sim/ha/ha_server.h"

namespace tembra::sim {

/// Hands bulbs over to the HA server. All calls throw what DeviceList throws.
class HueLamps {
 public:
  HueLamps(HaServer& haServer, const DeviceList& list) : haServer_(haServer), list_(list) {}

  /// Whether the list holds a bulb of the bridge: then the bridge has been added.
  bool holds(const std::string& bridgeId) const;
  void add(const std::string& bridgeId, const std::string& name);
  /// The bulb with which a bridge comes. A bridge that was added before keeps its bulbs.
  void addFirst(const std::string& bridgeId);
  void drop(const std::string& bridgeId);

 private:
  HaServer& haServer_;
  const DeviceList& list_;
};

}  // namespace tembra::sim

#endif
