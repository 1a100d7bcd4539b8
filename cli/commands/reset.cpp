// tembra-assoc reset: makes the radios forget their devices.
#include <tembra/vocabulary.h>

#include <CLI/CLI.hpp>
#include <map>
#include <memory>
#include <string>

#include "cli/commands/commands.h"
#include "cli/dialogue/dialogue.h"
#include "cli/dialogue/questions.h"

namespace tembra::cli {
namespace {

struct ResetTarget {
  reset_type type;
  const char* question;
};

const std::map<std::string, ResetTarget> kResetTargets = {
    {"zigbee", {reset_zigbee, "Reset the ZigBee network? It forgets its devices."}},
    {"zwave", {reset_zwave, "Reset the Z-Wave network? It forgets its devices."}},
    {"both", {reset_both, "Reset both radio networks? They forget their devices."}},
    {"all",
     {reset_both_and_remove_all, "Reset both radio networks and empty the device list? They forget their devices."}},
};

void reset(const Context& context, const std::string& radios) {
  const ResetTarget& target = kResetTargets.at(radios);
  confirm(context, target.question);
  Dialogue(context).run(
      "reset(" + radios + ")", [&target](Frontend& kit) { return kit.reset(target.type); }, {},
      Dialogue::AtInterrupt::kFinish);
  context.display.note("Reset " + radios + ".");
}

}  // namespace

void declareReset(CLI::App& program, Action& action) {
  CLI::App* command = program.add_subcommand("reset", "reset the radio networks; all: empty the device list as well");
  auto radios = std::make_shared<std::string>();
  command->add_option("radios", *radios, "zigbee, zwave, both or all")
      ->check(CLI::IsMember(&kResetTargets))
      ->required();
  command->callback([&action, radios] { action = [radios](const Context& context) { reset(context, *radios); }; });
}

}  // namespace tembra::cli
