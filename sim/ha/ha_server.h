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
  /// The note that goes with a Z-Wave node into the device list, to be found there in a later run.
  using NoteOfNode = std::function<std::string(unsigned char node)>;

  HaServer(Surroundings surroundings, DeviceList& list, NoteOfNode noteOfNode);

 private:
  void handle(Bytes datagram) override;
  void apply(const HaNotice& notice);
  void apply(const ZwNodeInfo& node);
  void apply(const ZbDeviceInfo& device);

  void add(const NewDevice& device, std::string_view note, const DeviceList::Test& sameDevice);
  void drop(std::string_view what, const DeviceList::Test& test, Happening happening);

  DeviceList& list_;
  NoteOfNode noteOfNode_;
};

/// Whether a record is that of a Z-Wave node.
bool holdsNode(const DeviceRecord& record, unsigned char node);

}  // namespace tembra::sim

#endif
