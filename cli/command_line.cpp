#include "command_line.h"

#include <CLI/CLI.hpp>

#include "connection.h"

namespace tembra::cli {
namespace {

constexpr void (*kCommands[])(CLI::App&, Action&) = {
    declareAdd,   declareRemove, declareCancel, declareReset,    declareDevices,
    declareWatch, declareHue,    declareNest,   declareClassify, declareNames,
};

constexpr char kExitStatus[] =
    "Exit status: 0 done, 1 the operation failed, 2 wrong usage, 3 no connection, 130 interrupted.\n"
    "Ctrl-C cancels a running operation on both radios. What the Hue or the Nest server was told cannot be taken back.";

}  // namespace

void declareCommandLine(CLI::App& program, Options& options, Action& action) {
  program.add_option("--role", options.role, "front end to appear as")
      ->check(CLI::IsMember(roleNames()))
      ->capture_default_str();
  program.add_option("--db", options.database, "device database, instead of the system's own");
  program.add_flag("--json", options.json, "one JSON object a line for each event (or device)");
  program.add_flag("--yes", options.yes, "ask nothing: confirm, take the first type, keep the default name");
  program.add_flag("--timeline", options.timeline, "report for a timeline")->envname("TEMBRA_TIMELINE")->group("");
  program.footer(kExitStatus);
  program.require_subcommand(0, 1);
  program.fallthrough();
  for (const auto declare : kCommands) declare(program, action);
}

}  // namespace tembra::cli
