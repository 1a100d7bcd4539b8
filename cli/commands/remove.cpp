// tembra-assoc remove: the next device whose button is pressed leaves the home.
#include <tembra/assoc.h>

#include <CLI/CLI.hpp>
#include <memory>

#include "cli/commands/commands.h"
#include "cli/commands/database_file.h"
#include "cli/commands/taking_out.h"
#include "cli/dialogue/dialogue.h"
#include "cli/dialogue/questions.h"

namespace tembra::cli {
namespace {

constexpr unsigned short kNoAddress = 0xFFFE;

// The ZigBee server has one status for a stranger that left and for a removal that failed. Only a stranger may have an
// address.
bool mayHaveFailed() {
  const TembraAssociation& service = *TembraAssociation::getInstance();
  return service.activeRadio == SERVER_ZIGBEE && service.zbDevice.shortAddress == kNoAddress;
}

void removeDevice(const Context& context) {
  confirm(context, "Remove the next device whose button is pressed from the home and the device list?");
  complainOfForeignDatabase(context);
  Dialogue(context).run("remove", &Frontend::remove);
}

void removeUnlisted(const Context& context) {
  complainOfForeignDatabase(context);
  Dialogue dialogue(context);
  takeOut(dialogue);
}

}  // namespace

void takeOut(Dialogue& dialogue) {
  Display& display = dialogue.context().display;
  display.note("The button is that of the device that joined, but was not kept. Another device would leave the home.");
  dialogue.run("take out", &Frontend::takeOut);
  if (mayHaveFailed()) {
    return display.complain(
        "the ZigBee server says that a device left, but not which. It says the same when its radio fails: if the "
        "device "
        "is still there, try again.");
  }
  display.note("The device is out of the radio network.");
}

void declareRemove(CLI::App& program, Action& action) {
  CLI::App* command = program.add_subcommand("remove", "remove a device: press its button when told to");
  auto unlisted = std::make_shared<bool>(false);
  command->add_flag("--unlisted", *unlisted, "a device that joined the radio network, but is not in the device list");
  command->callback([&action, unlisted] { action = *unlisted ? removeUnlisted : removeDevice; });
}

}  // namespace tembra::cli
