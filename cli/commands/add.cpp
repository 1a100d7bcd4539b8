// tembra-assoc add: the next device whose button is pressed joins the home.
#include <CLI/CLI.hpp>
#include <memory>
#include <string>

#include "cli/commands/commands.h"
#include "cli/commands/database_file.h"
#include "cli/dialogue/new_device.h"
#include "cli/words/device_types.h"
#include "cli/words/texts.h"

namespace tembra::cli {
namespace {

// What the record of a Z-Wave device holds, the larger one.
constexpr std::size_t kLargestRoom = 179;

void addDevice(const Context& context, const Wishes& wishes) {
  complainOfForeignDatabase(context.display);
  Dialogue dialogue(context);
  dialogue.run("add", &Frontend::add, [&dialogue, &wishes](const Event& event) {
    if (const auto* found = event.as<Found>()) finishDevice(dialogue, *found, wishes);
  });
}

std::string checkType(const std::string& text) {
  return parseType(text)
             ? ""
             : text + " is neither the name nor the number of a device type; \"names device-types\" lists them";
}

std::string checkText(const std::string& text) {
  const std::string fault = faultOf(text, kLargestRoom);
  return fault.empty() ? "" : "the text " + fault;
}

}  // namespace

void declareAdd(CLI::App& program, Action& action) {
  CLI::App* command = program.add_subcommand("add", "add a device: press its button when told to");
  auto wishes = std::make_shared<Wishes>();
  command
      ->add_option_function<std::string>(
          "--type", [wishes](const std::string& text) { wishes->type = parseType(text).value_or(0); },
          "the device's type, by name or number, where there is a choice")
      ->check(checkType);
  command->add_option("--name", wishes->name, "the device's name, instead of the one proposed")->check(checkText);
  command->add_option("--place", wishes->place, "where the device is, instead of \"Default\"")->check(checkText);
  command->callback([&action, wishes] { action = [wishes](const Context& context) { addDevice(context, *wishes); }; });
}

}  // namespace tembra::cli
