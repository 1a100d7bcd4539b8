// The command line: which command, with what.
#ifndef TEMBRA_CLI_COMMAND_LINE_H
#define TEMBRA_CLI_COMMAND_LINE_H

#include "cli/commands/commands.h"
#include "cli/options.h"

namespace tembra::cli {

/// Adds the options that all commands share, and the commands.
void declareCommandLine(CLI::App& program, Options& options, Action& action);

/// Parses the arguments; "help hue add" is "hue add --help". Throws CLI::ParseError.
void readCommandLine(CLI::App& program, int argc, char** argv);

}  // namespace tembra::cli

#endif
