#include "sim/replay/ip_effects.h"

#include <utility>

#include "sim/core/record_bytes.h"
#include "sim/hue/command_check.h"
#include "sim/replay/commands_sent.h"
#include "tembra/records.h"
#include "tembra/vocabulary.h"

namespace tembra::sim {

void IpEffects::requested(Server server, std::span<const unsigned char> request) {
  if (server == Server::kHue) hueRequest_.emplace(request.begin(), request.end());
  if (server == Server::kNest) nestRequest_.emplace(request.begin(), request.end());
}

void IpEffects::answered(Server server, std::span<const unsigned char> answer) {
  if (server == Server::kHue && hueRequest_) hueAnswered(answer);
  if (server == Server::kNest && nestRequest_) nestAnswered(answer);
}

void IpEffects::hueAnswered(std::span<const unsigned char> answer) {
  const int type = recordFrom<HueAnswer>(answer).type;
  const auto bytes = *std::exchange(hueRequest_, std::nullopt);
  const auto request = recordFrom<HueCommand>(bytes);
  const std::string bridgeId = bridgeIdIn(request);
  const Command command = commandIn(Server::kHue, bytes);
  if (command == Command::kHueAdd && type == HUE_BRIDGE_ADDED) lamps_.addFirst(bridgeId);
  if (command == Command::kHueBulb && type == HUE_BULB_ADDED) lamps_.add(bridgeId, textIn(request.argument));
  if (command == Command::kHueRemove && (type == HUE_DONE || type == HUE_DONE_2)) lamps_.drop(bridgeId);
}

void IpEffects::nestAnswered(std::span<const unsigned char> answer) {
  const int result = recordFrom<NestAnswer>(answer).command;
  const auto bytes = *std::exchange(nestRequest_, std::nullopt);
  const Command command = commandIn(Server::kNest, bytes);
  if (command == Command::kNestLink && result == NEST_ANSWER_121) {
    authorisation_.keep(textIn(recordFrom<NestCommand>(bytes).text));
  }
  if (command == Command::kNestUnlink && result == NEST_ANSWER_122) authorisation_.forget();
}

}  // namespace tembra::sim
