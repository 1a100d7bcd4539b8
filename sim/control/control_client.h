// Asks a running simulator.
#ifndef TEMBRA_SIM_CONTROL_CONTROL_CLIENT_H
#define TEMBRA_SIM_CONTROL_CONTROL_CLIENT_H

#include <string>

#include "sim/core/outcome.h"

namespace tembra::sim {

/// Sends one request and waits a few seconds for its answer; throws one sentence when no simulator answers.
Outcome ask(const std::string& controlPath, const std::string& request);

}  // namespace tembra::sim

#endif
