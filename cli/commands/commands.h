// The commands of the program, one file each. A new one is declared here and entered in the table of command_line.cpp.
#ifndef TEMBRA_CLI_COMMANDS_H
#define TEMBRA_CLI_COMMANDS_H

#include <functional>

#include "cli/context.h"

// Not the whole parser: it costs every file that includes it seconds of compilation.
namespace CLI {
class App;
}

namespace tembra::cli {

/// What the command line asks for, to be run when it is known to be right. Throws Failure or Interrupted.
using Action = std::function<void(const Context&)>;

// Each adds one command to the program and sets the action when the command is given.
void declareAdd(CLI::App& program, Action& action);
void declareRemove(CLI::App& program, Action& action);
void declareCancel(CLI::App& program, Action& action);
void declareReport(CLI::App& program, Action& action);
void declareReset(CLI::App& program, Action& action);
void declareDevices(CLI::App& program, Action& action);
void declareDoctor(CLI::App& program, Action& action);
void declareWatch(CLI::App& program, Action& action);
void declareRecord(CLI::App& program, Action& action);
void declareHue(CLI::App& program, Action& action);
void declareNest(CLI::App& program, Action& action);
void declareClassify(CLI::App& program, Action& action);
void declareNames(CLI::App& program, Action& action);

}  // namespace tembra::cli

#endif
