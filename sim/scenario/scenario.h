// A scenario: what happens by itself, step after step.
#ifndef TEMBRA_SIM_SCENARIO_SCENARIO_H
#define TEMBRA_SIM_SCENARIO_SCENARIO_H

#include <chrono>
#include <cstddef>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "sim/control/commands.h"
#include "sim/core/surroundings.h"

namespace tembra::sim {

struct ScenarioStep {
  std::optional<Happening> on;                  ///< waits for this first
  std::optional<std::chrono::milliseconds> at;  ///< since the simulator was ready
  std::chrono::milliseconds after{0};           ///< since the step before, or since `on`
  std::string request;                          ///< for Commands
};

using DeviceExists = std::function<bool(const std::string&)>;

/// Throws one sentence that says what is wrong where.
std::vector<ScenarioStep> loadScenario(const std::filesystem::path& file, const DeviceExists& deviceExists);

/// Plays the steps in order: a step waits for its moment, then runs its request.
class Scenario {
 public:
  Scenario(Surroundings surroundings, const Commands& commands, std::vector<ScenarioStep> steps);
  Scenario(const Scenario&) = delete;
  Scenario& operator=(const Scenario&) = delete;
  ~Scenario();

  void start();

 private:
  void awaitStep();
  void schedule(const ScenarioStep& step);
  void happened(Happening what);
  void runStep();

  Surroundings surroundings_;
  const Commands& commands_;
  std::vector<ScenarioStep> steps_;
  std::size_t next_ = 0;
  bool scheduled_ = false;
  std::chrono::milliseconds start_{0};
  EventLoop::TimerId timer_ = 0;
};

}  // namespace tembra::sim

#endif
