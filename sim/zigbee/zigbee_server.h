// The ZigBee server: takes the library's commands and answers them as a coordinator with a home full of devices does.
#ifndef TEMBRA_SIM_ZIGBEE_ZIGBEE_SERVER_H
#define TEMBRA_SIM_ZIGBEE_ZIGBEE_SERVER_H

#include <string>
#include <string_view>

#include "sim/radio/network.h"
#include "sim/radio/radio_server.h"
#include "sim/zigbee/catalogue.h"
#include "tembra/records.h"

namespace tembra::sim {

/// The short addresses that the coordinator gives to devices.
inline constexpr RadioNetwork::Address kFirstAddress = 0x1A01;
inline constexpr RadioNetwork::Address kLastAddress = 0xFFF7;

class ZigbeeServer final : public RadioServer {
 public:
  ZigbeeServer(Surroundings surroundings, Answers::Manner manner, const ZigbeeCatalogue& catalogue,
               RadioNetwork& network);

  bool hasDevice(std::string_view name) const override { return catalogue_.find(name) != nullptr; }

  /// Says a status out of order: "STATUS" about no known device, or "STATUS DEVICE" with the device's description.
  /// What the server was going to say still follows.
  Outcome say(const std::string& what);

 private:
  struct Command;

  void handle(Bytes datagram) override;
  void startAdding() { become(Mode::kAdding, Happening::kZigbeeAdd); }
  void startRemoving() { become(Mode::kRemoving, Happening::kZigbeeRemove); }
  void cancel();
  void beginReset() { ++begunResets_; }
  void endReset();

  Outcome add(std::string_view device) override;
  Outcome remove(std::string_view device) override;
  Answer failure(bool adding) const override;

  static const Command kCommands[5];

  const ZigbeeCatalogue& catalogue_;
  RadioNetwork& network_;
  int begunResets_ = 0;
};

}  // namespace tembra::sim

#endif
