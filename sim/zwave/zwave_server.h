// The Z-Wave server: takes the library's commands and answers them as a controller with a home full of devices does.
#ifndef TEMBRA_SIM_ZWAVE_ZWAVE_SERVER_H
#define TEMBRA_SIM_ZWAVE_ZWAVE_SERVER_H

#include <functional>
#include <string_view>

#include "sim/core/daemon.h"
#include "sim/core/outcome.h"
#include "sim/radio/answers.h"
#include "sim/zwave/catalogue.h"
#include "sim/zwave/network.h"
#include "tembra/records.h"

namespace tembra::sim {

class ZwaveServer final : public Daemon {
 public:
  using IsStored = std::function<bool(ZwaveNetwork::NodeId)>;

  /// `isStored`: whether the device list holds the node; such a node is not interviewed again when it rejoins.
  ZwaveServer(Surroundings surroundings, Answers::Manner manner, const ZwaveCatalogue& catalogue, ZwaveNetwork& network,
              IsStored isStored);

  /// Somebody presses the button of a device.
  Outcome press(std::string_view device);
  /// Somebody presses a button and the radio fails.
  Outcome pressFailing();
  /// "idle", "adding" or "removing".
  std::string_view mode() const;

 private:
  enum class Mode { kIdle, kAdding, kRemoving };
  struct Command;

  void handle(Bytes datagram) override;
  void checkUnusedBytes(const ZwaveCommand& command);
  void startAdding();
  void startRemoving();
  void cancel();
  void reset();

  Outcome readyForButton() const;
  Outcome addDevice(std::string_view name, const ZwaveDevice& device);
  Outcome removeDevice(std::string_view name);
  void play(std::vector<Answer> answers);

  static const Command kCommands[4];

  const ZwaveCatalogue& catalogue_;
  ZwaveNetwork& network_;
  IsStored isStored_;
  Answers answers_;
  Mode mode_ = Mode::kIdle;
};

}  // namespace tembra::sim

#endif
