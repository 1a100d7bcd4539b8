// The steps of a scenario, as a file has them.
#ifndef TEMBRA_SIM_REPLAY_SCENARIO_STEPS_H
#define TEMBRA_SIM_REPLAY_SCENARIO_STEPS_H

#include <chrono>
#include <string>
#include <string_view>
#include <vector>

namespace tembra::sim {

struct WrittenStep {
  std::string_view on;  ///< empty: nothing is waited for
  std::chrono::milliseconds after;
  std::string action;
  std::string value;  ///< "5" or "true" of the actions whose value is no text
};

/// One line for each step.
std::string scenarioText(const std::vector<WrittenStep>& steps);

}  // namespace tembra::sim

#endif
