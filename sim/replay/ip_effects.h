// What the Hue and the Nest server do beside their answers: bulbs in the device list, the file of the account's code.
#ifndef TEMBRA_SIM_REPLAY_IP_EFFECTS_H
#define TEMBRA_SIM_REPLAY_IP_EFFECTS_H

#include <optional>
#include <span>
#include <vector>

#include "sim/hue/lamps.h"
#include "sim/nest/authorisation.h"
#include "sim/replay/traffic.h"

namespace tembra::sim {

/// All calls throw what the device list and the file throw.
class IpEffects {
 public:
  IpEffects(HueLamps lamps, Authorisation authorisation) : lamps_(lamps), authorisation_(std::move(authorisation)) {}

  void requested(Server server, std::span<const unsigned char> request);
  /// A success does what the last request asked for.
  void answered(Server server, std::span<const unsigned char> answer);

 private:
  using Request = std::optional<std::vector<unsigned char>>;

  void hueAnswered(std::span<const unsigned char> answer);
  void nestAnswered(std::span<const unsigned char> answer);

  HueLamps lamps_;
  Authorisation authorisation_;
  Request hueRequest_;  ///< none: it was answered already
  Request nestRequest_;
};

}  // namespace tembra::sim

#endif
