// tembra-assoc remove: the next device whose button is pressed leaves the home.
#include <CLI/CLI.hpp>

#include "cli/commands/commands.h"
#include "cli/commands/database_file.h"
#include "cli/dialogue/dialogue.h"
#include "cli/dialogue/questions.h"

namespace tembra::cli {
namespace {

void removeDevice(const Context& context) {
  confirm(context, "Remove the next device whose button is pressed from the home and the device list?");
  complainOfForeignDatabase(context);
  Dialogue(context).run("remove", &Frontend::remove);
}

}  // namespace

void declareRemove(CLI::App& program, Action& action) {
  CLI::App* command = program.add_subcommand("remove", "remove a device: press its button when told to");
  command->callback([&action] { action = removeDevice; });
}

}  // namespace tembra::cli
