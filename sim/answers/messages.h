// The answers of the servers, by the names that faults and the timeline use.
#ifndef TEMBRA_SIM_ANSWERS_MESSAGES_H
#define TEMBRA_SIM_ANSWERS_MESSAGES_H

#include <array>
#include <string_view>

namespace tembra::sim {

struct MessageKind {
  std::string_view name;
  int latencies;          ///< how many times the base latency the server takes for it
  unsigned char failure;  ///< the code with which it tells a failure
};

// Z-Wave server; the code is a node id
inline constexpr MessageKind kJoined{"joined", 1, 255};
inline constexpr MessageKind kIdentity{"identity", 1, 255};
inline constexpr MessageKind kInfo{"info", 3, 255};  // every command class of the device is asked
inline constexpr MessageKind kRemoved{"removed", 1, 255};
inline constexpr MessageKind kClosing{"closing", 2, 255};
inline constexpr MessageKind kResetDone{"reset", 1, 255};

// ZigBee server; the code is a status
inline constexpr MessageKind kFound{"found", 1, 11};
inline constexpr MessageKind kGetting{"getting", 1, 11};
inline constexpr MessageKind kComplete{"complete", 3, 11};  // every endpoint of the device is asked
inline constexpr MessageKind kLeft{"left", 1, 12};

// Hue server; the code is a result type
inline constexpr MessageKind kBridges{"bridges", 2, 1};
inline constexpr MessageKind kHueResult{"hue", 1, 1};

// Nest server; the code is a command
inline constexpr MessageKind kNestResult{"nest", 1, 124};

inline constexpr std::array kMessageKinds{kJoined,  kIdentity, kInfo, kRemoved, kClosing,   kResetDone, kFound,
                                          kGetting, kComplete, kLeft, kBridges, kHueResult, kNestResult};

}  // namespace tembra::sim

#endif
