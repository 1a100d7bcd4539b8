// A command of the router that may hang.
#ifndef TEMBRA_CLI_DOCTOR_BOUNDED_COMMAND_H
#define TEMBRA_CLI_DOCTOR_BOUNDED_COMMAND_H

#include <chrono>
#include <string>

#include "cli/context.h"

namespace tembra::cli::doctor {

struct Answer {
  int error = 0;         ///< why the shell was not started
  bool isLate = false;   ///< it was killed
  int status = 0;        ///< exit status, as a shell tells it
  std::string output{};  ///< at most the first 1000 bytes
};

/// Runs the command by the shell, with the program's environment, and ends it after this time. Throws Interrupted.
[[nodiscard]] Answer runCommand(const Context& context, const std::string& command, std::chrono::milliseconds longest);

}  // namespace tembra::cli::doctor

#endif
