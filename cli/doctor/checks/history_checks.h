// A leap of the clock that the flight recorder saw.
#ifndef TEMBRA_CLI_DOCTOR_HISTORY_CHECKS_H
#define TEMBRA_CLI_DOCTOR_HISTORY_CHECKS_H

#include <optional>

#include "cli/doctor/checks/check.h"

namespace tembra::cli::doctor {

/// A finding, or nothing.
[[nodiscard]] std::optional<Verdict> clockStep(Router& router);

}  // namespace tembra::cli::doctor

#endif
