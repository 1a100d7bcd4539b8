// The checks, a file for each of the router's libraries.
#ifndef TEMBRA_TOOLS_PLATFORM_CHECK_CHECKS_H
#define TEMBRA_TOOLS_PLATFORM_CHECK_CHECKS_H

#include <vector>

#include "platform_check/trial.h"

namespace tembra::platform_check {

std::vector<Check> loggerChecks();
std::vector<Check> deviceTypeChecks();
std::vector<Check> jsonChecks();
std::vector<Check> settingsChecks();
std::vector<Check> depotChecks();

}  // namespace tembra::platform_check

#endif
