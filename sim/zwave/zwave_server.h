// The Z-Wave server: takes the library's commands and answers them as a controller with a home full of devices does.
#ifndef TEMBRA_SIM_ZWAVE_ZWAVE_SERVER_H
#define TEMBRA_SIM_ZWAVE_ZWAVE_SERVER_H

#include <functional>
#include <string_view>

#include "sim/radio/network.h"
#include "sim/radio/radio_server.h"
#include "sim/zwave/catalogue.h"
#include "tembra/records.h"

namespace tembra::sim {

/// The node ids that a controller, which is node 1 itself, gives to devices.
inline constexpr RadioNetwork::Address kFirstNode = 2;
inline constexpr RadioNetwork::Address kLastNode = 232;

class ZwaveServer final : public RadioServer {
 public:
  using IsStored = std::function<bool(unsigned char node)>;

  /// `isStored`: whether the device list holds the node; such a node is not interviewed again when it rejoins.
  ZwaveServer(Surroundings surroundings, Answers::Manner manner, const ZwaveCatalogue& catalogue, RadioNetwork& network,
              IsStored isStored);

  bool hasDevice(std::string_view name) const override { return catalogue_.find(name) != nullptr; }

 private:
  struct Command;

  void handle(Bytes datagram) override;
  void checkUnusedBytes(const ZwaveCommand& command);
  void startAdding() { become(Mode::kAdding, Happening::kAdd); }
  void startRemoving() { become(Mode::kRemoving, Happening::kRemove); }
  void cancel();
  void reset();

  Outcome add(std::string_view device) override;
  Outcome remove(std::string_view device) override;
  Answer failure(bool adding) const override;

  static const Command kCommands[4];

  const ZwaveCatalogue& catalogue_;
  RadioNetwork& network_;
  IsStored isStored_;
};

}  // namespace tembra::sim

#endif
