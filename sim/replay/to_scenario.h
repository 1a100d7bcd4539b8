// A recording as a scenario: `tembra-sim scenario`.
#ifndef TEMBRA_SIM_REPLAY_TO_SCENARIO_H
#define TEMBRA_SIM_REPLAY_TO_SCENARIO_H

#include <vector>

#include "sim/home.h"
#include "sim/replay/scenario_steps.h"
#include "sim/replay/traffic.h"

namespace tembra::sim {

/// The buttons that were pressed, as far as the simulated servers would have said the same; else what was said, as it
/// was.
std::vector<WrittenStep> scenarioOf(const Traffic& traffic, const Home& home);

}  // namespace tembra::sim

#endif
