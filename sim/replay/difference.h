// Where a request differs from the one that was recorded, in words.
#ifndef TEMBRA_SIM_REPLAY_DIFFERENCE_H
#define TEMBRA_SIM_REPLAY_DIFFERENCE_H

#include <span>
#include <string>
#include <vector>

#include "sim/replay/traffic.h"

namespace tembra::sim {

/// A line for each field that differs: "offset 616, record.name: then "Lamp" (4c 61), now "Lump" (4c 75)". Empty: both
/// say the same.
std::vector<std::string> differencesOf(Server server, std::span<const unsigned char> then,
                                       std::span<const unsigned char> now);

}  // namespace tembra::sim

#endif
