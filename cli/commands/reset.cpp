// tembra-assoc reset: makes the radios forget their devices.
#include <CLI/CLI.hpp>
#include <algorithm>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <tembra/frontend.hpp>
#include <vector>

#include "cli/commands/commands.h"
#include "cli/dialogue/dialogue.h"
#include "cli/dialogue/library_call.h"
#include "cli/dialogue/questions.h"
#include "cli/display/event_text.h"

namespace tembra::cli {
namespace {

constexpr std::chrono::seconds kForTheList{1};
constexpr std::size_t kMostNames = 10;

using Devices = std::vector<Device>;

struct ResetTarget {
  Reset type;
  const char* question;
  const char* done;
  bool (*isLost)(const Device& device);
};

bool isZigbee(const Device& device) { return device.radio == TEMBRA_RADIO_ZIGBEE; }
bool isZwave(const Device& device) { return device.radio == TEMBRA_RADIO_ZWAVE; }

const std::map<std::string, ResetTarget> kResetTargets = {
    {"zigbee", {TEMBRA_RESET_ZIGBEE, "Reset the ZigBee network?", "Reset the ZigBee network.", isZigbee}},
    {"zwave", {TEMBRA_RESET_ZWAVE, "Reset the Z-Wave network?", "Reset the Z-Wave network.", isZwave}},
    {"both",
     {TEMBRA_RESET_BOTH, "Reset both radio networks?", "Reset both radio networks.",
      [](const Device& device) { return isZigbee(device) || isZwave(device); }}},
    {"all",
     {TEMBRA_RESET_BOTH_AND_DEVICE_LIST, "Reset both radio networks and empty the device list?",
      "Reset both radio networks, and emptied the device list.", [](const Device&) { return true; }}},
};

// The library waits for a writer without end; the user need not.
std::optional<Devices> listedDevices(const Context& context) {
  const auto list = std::make_shared<std::optional<Devices>>();
  const bool isRead = runLibraryCall(
      context, [list] { *list = devices(); }, kForTheList);
  return isRead ? *list : std::nullopt;
}

std::string lossText(const std::optional<Devices>& devices, bool empties) {
  if (!devices) return "The device list cannot be read.";
  const std::size_t count = devices->size();
  if (count == 0) return empties ? "The device list is empty." : "The device list has no such device.";
  std::string text = count == 1 ? "1 device is lost: " : std::to_string(count) + " devices are lost: ";
  for (std::size_t i = 0; i < std::min(count, kMostNames); ++i) {
    text += (i == 0 ? "" : ", ") + numberedName((*devices)[i].name, (*devices)[i].id);
  }
  text += count > kMostNames ? " and " + std::to_string(count - kMostNames) + " more." : ".";
  return text + (empties ? "" : count == 1 ? " It stays in the device list." : " They stay in the device list.");
}

void confirmReset(const Context& context, const ResetTarget& target) {
  if (context.options.yes) return;
  auto devices = listedDevices(context);
  if (devices) std::erase_if(*devices, [&target](const Device& device) { return !target.isLost(device); });
  confirm(context, target.question + (" " + lossText(devices, target.type == TEMBRA_RESET_BOTH_AND_DEVICE_LIST)));
}

void reset(const Context& context, const std::string& radios) {
  const ResetTarget& target = kResetTargets.at(radios);
  confirmReset(context, target);
  Dialogue(context).run(
      "reset(" + radios + ")", [&target](Frontend& kit) { return kit.reset(target.type); }, {},
      Dialogue::AtInterrupt::kFinish);
  context.display.note(target.done + std::string(" No radio confirms a reset."));
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
