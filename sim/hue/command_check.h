// What a command to the Hue server must and must not contain.
#ifndef TEMBRA_SIM_HUE_COMMAND_CHECK_H
#define TEMBRA_SIM_HUE_COMMAND_CHECK_H

#include <string>
#include <vector>

#include "tembra/records.h"

namespace tembra::sim {

/// The texts that a command carries.
enum class HueTexts { kNone, kBridge, kBridgeAndArgument };

/// The bridge id of a command, in small letters.
std::string bridgeIdIn(const HueCommand& command);

/// The mistakes of a command, one sentence each.
std::vector<std::string> mistakesIn(const HueCommand& command, HueTexts texts);

}  // namespace tembra::sim

#endif
