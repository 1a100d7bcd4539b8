// The home-automation server: keeps the device list as the library's notices tell it to.
#ifndef TEMBRA_SIM_HA_HA_SERVER_H
#define TEMBRA_SIM_HA_HA_SERVER_H

#include <functional>
#include <string>
#include <string_view>

#include "sim/core/daemon.h"
#include "sim/ha/device_list.h"
#include "tembra/records.h"

namespace tembra::sim {

class HaServer final : public Daemon {
 public:
  /// The note that goes with a device of a radio into the device list, to be found there in a later run.
  using NoteOf = std::function<std::string(unsigned short address)>;
  struct Notes {
    NoteOf zwave;
    NoteOf zigbee;
  };

  HaServer(Surroundings surroundings, DeviceList& list, Notes notes);

  /// The router's other daemons hand their devices over by these, without a datagram. Both throw what DeviceList
  /// throws.
  void store(const NewDevice& device, std::string_view note);
  void drop(std::string_view what, const DeviceList::Test& test, Happening happening);

 private:
  void handle(Bytes datagram) override;
  void apply(const HaNotice& notice);
  void apply(const ZwNodeInfo& node);
  void apply(const ZbDeviceInfo& device);

  void replace(const NewDevice& device, std::string_view note, const DeviceList::Test& sameDevice);

  DeviceList& list_;
  Notes notes_;
};

/// Whether a record is that of a Z-Wave node.
bool holdsNode(const DeviceRecord& record, unsigned char node);

}  // namespace tembra::sim

#endif
