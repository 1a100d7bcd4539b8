// Where the simulated daemons live, and where the library listens. The library's own table is not asked: a simulator
// that asks its caller where to be cannot find the caller wrong.
#ifndef TEMBRA_SIM_CORE_ENDPOINTS_H
#define TEMBRA_SIM_CORE_ENDPOINTS_H

#include <cstdint>
#include <string_view>

namespace tembra::sim {

struct Endpoint {
  std::string_view name;
  const char* address;
  std::uint16_t port;
};

inline constexpr Endpoint kLibrary{"library", "127.255.255.4", 8888};
inline constexpr Endpoint kZwaveServer{"Z-Wave server", "127.255.255.254", 8888};
inline constexpr Endpoint kZigbeeServer{"ZigBee server", "127.255.255.253", 8888};
inline constexpr Endpoint kHueServer{"Hue server", "127.255.255.252", 8888};
inline constexpr Endpoint kNestServer{"Nest server", "127.255.255.251", 8888};
inline constexpr Endpoint kHaServer{"HA server", "127.255.255.1", 9999};

// Somebody at an address that no part of the router has.
inline constexpr Endpoint kStranger{"stranger", "127.0.0.66", 8888};

}  // namespace tembra::sim

#endif
