// The answers of the radio servers, by the names that faults and the timeline use.
#ifndef TEMBRA_SIM_RADIO_MESSAGES_H
#define TEMBRA_SIM_RADIO_MESSAGES_H

#include <array>
#include <string_view>

namespace tembra::sim {

struct MessageKind {
  std::string_view name;
  int latencies;  ///< how many times the base latency the server takes for it
};

inline constexpr MessageKind kJoined{"joined", 1};
inline constexpr MessageKind kIdentity{"identity", 1};
inline constexpr MessageKind kInfo{"info", 3};  // every command class of the device is asked
inline constexpr MessageKind kRemoved{"removed", 1};
inline constexpr MessageKind kClosing{"closing", 2};
inline constexpr MessageKind kResetDone{"reset", 1};

inline constexpr std::array kMessageKinds{kJoined, kIdentity, kInfo, kRemoved, kClosing, kResetDone};

}  // namespace tembra::sim

#endif
