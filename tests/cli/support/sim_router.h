// The simulated router, and the hands that press its devices' buttons.
#ifndef TEMBRA_TESTS_CLI_SIM_ROUTER_H
#define TEMBRA_TESTS_CLI_SIM_ROUTER_H

#include <string>
#include <vector>

#include "support/program.h"

namespace tembra::test {

/// What the radio servers were told, each in its order: "add a device", "cancel".
struct Told {
  std::vector<std::string> zigbee;
  std::vector<std::string> zwave;
};

class SimRouter {
 public:
  /// Ready when constructed, and quick to answer. `options` are those of tembra-sim.
  explicit SimRouter(const std::vector<std::string>& options = {});

  /// Waits until an add (or a remove) has begun, then presses the button of the device; "--fail" presses none of them.
  void pressOnAdd(const std::string& device);
  void pressOnRemove(const std::string& device);

  /// Lets a server say something of its own accord: {"hue", "1"}.
  void say(std::vector<std::string> answer);

  /// Waits for a line of its timeline, behind those waited for before.
  void waitFor(const std::string& text) { program_.waitFor(text); }

  /// Waits until each radio server was told this, in whatever order.
  void waitForBothRadiosToHear(const std::string& command);

  /// Stops it. The test fails when the router was told anything that no caller may tell it.
  Told stop();

  // Whole commands of tembra-assoc: begun, a button pressed, ended.
  [[nodiscard]] Ended add(const std::string& device, std::vector<std::string> arguments, Clock clock = Clock::kReal);
  [[nodiscard]] Ended remove(const std::string& device, std::vector<std::string> arguments, Clock clock = Clock::kReal);

 private:
  Program program_;
};

}  // namespace tembra::test

#endif
