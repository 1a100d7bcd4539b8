// What a recording holds of the library's traffic.
#ifndef TEMBRA_SIM_REPLAY_TRAFFIC_H
#define TEMBRA_SIM_REPLAY_TRAFFIC_H

#include <netinet/in.h>

#include <array>
#include <chrono>
#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "recording/database_lines.h"
#include "sim/core/endpoints.h"

namespace tembra::sim {

/// The servers, by their places in kServers.
enum class Server : std::size_t { kZwave, kZigbee, kHue, kNest, kHa };

inline constexpr std::array<const Endpoint*, 5> kServers{&kZwaveServer, &kZigbeeServer, &kHueServer, &kNestServer,
                                                         &kHaServer};

inline const Endpoint& endpointOf(Server server) { return *kServers[static_cast<std::size_t>(server)]; }

/// The words for the servers, in scenarios and on the command line.
inline constexpr std::array<std::string_view, 5> kServerWords{"zwave", "zigbee", "hue", "nest", "ha"};

/// "server zwave killed": a comment of a recording.
std::string serverLine(std::string_view word, bool runs);

/// None: no server has the address.
std::optional<Server> serverAt(const sockaddr_in& address);
bool isLibrary(const sockaddr_in& address);

/// A datagram, or that a server was killed or started.
struct RecordedDatagram {
  unsigned long packet;  ///< its number in the file, as Wireshark shows it
  std::chrono::microseconds time;
  bool isRequest;                ///< from the library to a server; else from anybody to the library
  std::optional<Server> server;  ///< that receives or sends; none: a stranger sends
  sockaddr_in sender;
  std::vector<unsigned char> bytes;
  std::optional<bool> runs;  ///< the server from now on; none: a datagram
};

struct Traffic {
  std::vector<RecordedDatagram> datagrams;
  std::vector<recording::DatabaseRecord> database;  ///< when the recording began; empty: the recording does not say
  bool isCut = false;                               ///< the file ends in the middle of a block
};

/// Throws one sentence that says what is wrong. Tells on standard error that a recording was cut off.
Traffic loadTraffic(const std::filesystem::path& file);

/// Tells on standard error that a recording does not say which devices there were.
void warnWithoutDatabase(const Traffic& traffic);

/// Makes the database with which the recording began. Throws when something stands in its place.
void makeDatabase(const std::string& path, const Traffic& traffic);

}  // namespace tembra::sim

#endif
