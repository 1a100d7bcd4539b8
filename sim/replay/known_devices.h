// The labels of the devices behind the addresses, as far as what the radio servers say tells them.
#ifndef TEMBRA_SIM_REPLAY_KNOWN_DEVICES_H
#define TEMBRA_SIM_REPLAY_KNOWN_DEVICES_H

#include <span>
#include <string>

#include "sim/home.h"
#include "sim/radio/network.h"
#include "sim/replay/traffic.h"
#include "sim/zigbee/zigbee_server.h"
#include "sim/zwave/zwave_server.h"

namespace tembra::sim {

/// A full description that is a catalogue device's puts the device into its radio's network.
void joinDescribed(const Home& home, Server server, std::span<const unsigned char> description, RadioNetwork& zwave,
                   RadioNetwork& zigbee);

/// Empty: no device of the catalogue describes itself so.
std::string labelOf(const Home& home, Server server, std::span<const unsigned char> description);

}  // namespace tembra::sim

#endif
