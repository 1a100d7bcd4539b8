// tembra-assoc add: the next device whose button is pressed joins the home.
#include <tembra/frontend.h>

#include <CLI/CLI.hpp>
#include <memory>
#include <string>

#include "cli/commands/commands.h"
#include "cli/commands/database_file.h"
#include "cli/commands/taking_out.h"
#include "cli/dialogue/new_device.h"
#include "cli/dialogue/questions.h"
#include "cli/failure.h"
#include "cli/words/device_types.h"
#include "cli/words/texts.h"

namespace tembra::cli {
namespace {

// What the records of the devices hold.
constexpr std::size_t kZigbeeRoom = 31;
constexpr std::size_t kZwaveRoom = 179;

// Which radio the device is on shows when it has joined, and that is late for a text without room.
void checkRoom(Display& display, const std::string& what, const std::string& text) {
  if (text.size() <= kZigbeeRoom || tembra_server_listens(SERVER_ZIGBEE) == 0) return;
  const std::string fault = "the " + what + " has " + std::to_string(text.size()) +
                            " bytes, and a ZigBee device has room for " + std::to_string(kZigbeeRoom) + ".";
  if (tembra_server_listens(SERVER_ZWAVE) == 0) throw Failure(kUsage, fault);
  display.complain(fault);
}

// A device that is in the radio network, but not in the device list, while somebody is there to press its button.
void offerToTakeOut(Dialogue& dialogue) {
  const Context& context = dialogue.context();
  const auto& ended = dialogue.ended();
  const bool isThere =
      ended && (ended->reason == TEMBRA_REASON_UNKNOWN_KIND || ended->reason == TEMBRA_REASON_NOT_STORED);
  if (!isThere || !context.options.mayAsk()) return;
  context.display.complain(ended->text);
  if (agree(context, "Take the device out of the radio network again?")) takeOut(dialogue);
  throw Failure(kFailed, "the device was not added.");
}

void addDevice(const Context& context, const Wishes& wishes, bool again) {
  checkRoom(context.display, "name", wishes.name);
  checkRoom(context.display, "place", wishes.place);
  complainOfForeignDatabase(context);
  Dialogue dialogue(context);
  const auto finish = [&dialogue, wanted = wishes](const Event& event) mutable {
    const auto* warning = event.as<Warning>();
    if (warning != nullptr && warning->reason == TEMBRA_REASON_ALREADY_KNOWN) wanted.isKnown = true;
    if (const auto* found = event.as<Found>()) finishDevice(dialogue, *found, wanted);
  };
  try {
    again ? dialogue.run("add again", &Frontend::addAgain, finish) : dialogue.run("add", &Frontend::add, finish);
  } catch (const Failure&) {
    offerToTakeOut(dialogue);
    throw;
  }
}

std::string checkType(const std::string& text) {
  return parseType(text) ? "" : text + " is neither the name nor the number of a device type";
}

std::string checkText(const std::string& text) {
  const std::string fault = faultOf(text, kZwaveRoom);
  return fault.empty() ? "" : "the text " + fault;
}

}  // namespace

void declareAdd(CLI::App& program, Action& action) {
  CLI::App* command = program.add_subcommand("add", "add a device: press its button when told to");
  auto wishes = std::make_shared<Wishes>();
  command
      ->add_option_function<std::string>(
          "--type", [wishes](const std::string& text) { wishes->type = parseType(text).value_or(0); },
          "the device's type, by name or number, where there is a choice; \"names device-types\" lists them")
      ->check(checkType);
  command->add_option("--name", wishes->name, "the device's name, instead of the one proposed")->check(checkText);
  command->add_option("--place", wishes->place, "where the device is, instead of \"Default\"")->check(checkText);
  auto again = std::make_shared<bool>(false);
  command->add_flag("--again", *again, "a device that is known already leaves first, and keeps its name");
  command->footer("Name and place have room for " + std::to_string(kZigbeeRoom) + " bytes on a ZigBee device, for " +
                  std::to_string(kZwaveRoom) + " on a Z-Wave device.\n" + program.get_footer());
  command->callback([&action, wishes, again] {
    action = [wishes, again](const Context& context) { addDevice(context, *wishes, *again); };
  });
}

}  // namespace tembra::cli
