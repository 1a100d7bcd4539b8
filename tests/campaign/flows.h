// What a front end can do with this router, and what can go wrong with it.
#ifndef TEMBRA_TESTS_CAMPAIGN_FLOWS_H
#define TEMBRA_TESTS_CAMPAIGN_FLOWS_H

#include <span>
#include <string>
#include <vector>

namespace campaign {

enum class Goal {
  kAdd,
  kRemove,
  kCancel,
  kReset,
  kHueDiscover,
  kHueAdd,
  kHueBulb,
  kHueRefresh,
  kHueRemove,
  kNestLink,
  kNestUnlink
};

enum class Server { kZwave, kZigbee, kHue, kNest };

/// The server's name in requests to the simulated router.
const char* wordOf(Server server);

/// An answer of a server, by the name that the simulated router's faults use.
struct Message {
  const char* name;
  int waitSeconds;  ///< how long the library waits for it at most
};

struct Flow {
  const char* name;
  Goal goal;
  Server server;
  std::vector<Message> answers;  ///< in their order
};

/// Adding and removing once for each radio.
const std::vector<Flow>& flows();

enum class Scenario {
  kClean,
  kLost,
  kLate,
  kTooLate,
  kTwice,
  kShort,
  kReordered,
  kForeign,
  kForeignAlone,
  kFailure,
  kCode,
  kSilence,
  kKilled,
  kDeadFromTheStart,
  kInterrupted,
  kNobody
};

struct ScenarioName {
  Scenario scenario;
  const char* name;
};

std::span<const ScenarioName> scenarios();

/// Devices of the simulated home, by their labels.
std::span<const char* const> devicesOf(Server radio);

/// Of the one Hue bridge that is added.
inline constexpr char kBridgeMac[] = "02:a1:b2:0c:00:01";
inline constexpr char kBridgeId[] = "02a1b2fffe0c0001";

}  // namespace campaign

#endif
