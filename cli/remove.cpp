// tembra-assoc remove: the next device whose button is pressed leaves the home.
#include <CLI/CLI.hpp>

#include "commands.h"
#include "database_file.h"
#include "dialogue.h"
#include "questions.h"

namespace tembra::cli {
namespace {

void removeDevice(const Context& context) {
  confirm(context, "The next device whose button is pressed leaves the home and the device list.");
  complainOfForeignDatabase(context.display);
  Dialogue(context).run("remove", &Frontend::remove);
}

}  // namespace

void declareRemove(CLI::App& program, Action& action) {
  CLI::App* command = program.add_subcommand("remove", "remove a device: press its button when told to");
  command->callback([&action] { action = removeDevice; });
}

}  // namespace tembra::cli
