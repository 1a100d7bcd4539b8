// tembra-assoc hue: finds, adds, refreshes and removes Hue bridges, and adds their bulbs.
#include <tembra/records.h>

#include <CLI/CLI.hpp>
#include <array>
#include <cctype>
#include <memory>

#include "commands.h"
#include "event_report.h"
#include "hue_list.h"
#include "ip_operation.h"
#include "questions.h"
#include "texts.h"

namespace tembra::cli {
namespace {

struct HueTexts {
  std::string mac;
  std::string text;
};

enum class HueTakes { kNothing, kBridge, kBridgeAndBulb, kBridgeAndText };

struct HueTask {
  const char* name;
  const char* help;
  HueTakes takes;
  const char* call;
  void (*give)(TembraAssociation& service, char* mac, char* text);
  std::array<int, 2> done;  ///< the answers that say so
  const char* waitsFor;
  const char* advice;
  const char* consequence;  ///< to be confirmed; null: nothing is lost
  const char* result;       ///< what was done, up to the bridge's MAC address
};

// Of the answers 22 and 23 nothing is known but that the server finished what it was told.
constexpr HueTask kHueTasks[] = {
    {"discover",
     "find the Hue bridges of the home's network",
     HueTakes::kNothing,
     "Hue_initiateAdd",
     [](TembraAssociation& service, char*, char*) { service.Hue_initiateAdd(); },
     {EVENT_HUE_BRIDGES},
     "Looking for Hue bridges",
     "",
     nullptr,
     ""},
    {"add",
     "add a Hue bridge and its bulbs: press its link button when told to",
     HueTakes::kBridge,
     "Hue_addBridge",
     [](TembraAssociation& service, char* mac, char*) { service.Hue_addBridge(mac); },
     {EVENT_HUE_ADDED},
     "Press the round link button on top of the Hue bridge",
     "The bridge lets nobody in before its link button is pressed, the round one on its top: press it now.",
     nullptr,
     "Added the Hue bridge "},
    {"add-bulb",
     "add a bulb of a Hue bridge that was added",
     HueTakes::kBridgeAndBulb,
     "Hue_addDev",
     [](TembraAssociation& service, char* mac, char* text) { service.Hue_addDev(mac, text); },
     {EVENT_HUE_BULB_ADDED},
     "Adding the bulb",
     "",
     nullptr,
     "Added the bulb to the Hue bridge "},
    {"refresh",
     "look for changes of a Hue bridge that was added",
     HueTakes::kBridgeAndText,
     "Hue_refreshBridge",
     [](TembraAssociation& service, char* mac, char* text) { service.Hue_refreshBridge(mac, text); },
     {EVENT_HUE_DONE, EVENT_HUE_DONE_2},
     "Refreshing the Hue bridge",
     "",
     nullptr,
     "Refreshed the Hue bridge "},
    {"remove",
     "remove a Hue bridge and its bulbs",
     HueTakes::kBridge,
     "Hue_remove",
     [](TembraAssociation& service, char* mac, char*) { service.Hue_remove(mac); },
     {EVENT_HUE_DONE, EVENT_HUE_DONE_2},
     "Removing the Hue bridge",
     "",
     "The Hue bridge and its bulbs leave the home and the device list.",
     "Removed the Hue bridge "},
};

constexpr Refusal kHueRefusals[] = {
    {EVENT_HUE_FAILED, "the Hue server failed to do it."},
    {EVENT_HUE_BUTTON, "the link button of the Hue bridge was not pressed in time."},
    {EVENT_HUE_NO_BRIDGE, "there is no such Hue bridge in the home's network."},
    {EVENT_HUE_UNKNOWN_BRIDGE, "this Hue bridge has not been added; \"hue list\" tells those that have."},
};

std::string joinedTexts(const HueTask& task, const HueTexts& texts) {
  if (task.takes == HueTakes::kNothing) return "";
  return task.takes == HueTakes::kBridge ? texts.mac : texts.mac + ", " + texts.text;
}

void tellBridges(const Context& context, const HeardEvent& heard) {
  const std::vector<FoundBridge> bridges = foundBridges(heard);
  if (bridges.empty()) context.display.note("No Hue bridge was found.");
  for (const FoundBridge& bridge : bridges) {
    context.display.note("Found the Hue bridge " + bridge.mac + " at " + bridge.address + ".");
  }
}

void performHueTask(const Context& context, const HueTask& task, const HueTexts& texts) {
  if (task.consequence != nullptr) confirm(context, task.consequence);
  const auto give = [&task, texts = HueTexts(texts)](TembraAssociation& service) mutable {
    task.give(service, texts.mac.data(), texts.text.data());
  };
  const std::string call = std::string(task.call) + "(" + joinedTexts(task, texts) + ")";
  const HeardEvent heard =
      askServer(context, {SERVER_HUE, call, give, task.waitsFor, task.advice}, task.done, kHueRefusals);
  if (heard.event.code == EVENT_HUE_BRIDGES) return tellBridges(context, heard);
  context.display.note(task.result + texts.mac + ".");
}

// The library takes any text; only one of this form becomes a bridge's id.
std::string checkMac(const std::string& text) {
  constexpr char kForm[] = "xx:xx:xx:xx:xx:xx";
  bool good = text.size() == sizeof kForm - 1;
  for (std::size_t i = 0; good && i < text.size(); ++i) {
    good = kForm[i] == ':' ? text[i] == ':' : std::isxdigit(static_cast<unsigned char>(text[i])) != 0;
  }
  return good ? "" : text + " is no MAC address like a1:b2:c3:0a:1b:2c";
}

// The library would cut it without a word.
std::string checkHueText(const std::string& text) {
  constexpr std::size_t kLongest = sizeof HueCommand::argument - 1;
  return text.size() <= kLongest ? "" : "the text is longer than " + std::to_string(kLongest) + " bytes";
}

void addTextOption(CLI::App& command, HueTakes takes, HueTexts& texts) {
  if (takes == HueTakes::kBridgeAndBulb) {
    command.add_option("bulb", texts.text, "the bulb's name")->check(checkHueText)->required();
  } else if (takes == HueTakes::kBridgeAndText) {
    command.add_option("text", texts.text, "a text for the Hue server, such as its user")->check(checkHueText);
  }
}

void declareHueTask(CLI::App& hue, Action& action, const HueTask& task) {
  CLI::App* command = hue.add_subcommand(task.name, task.help);
  auto texts = std::make_shared<HueTexts>();
  if (task.takes != HueTakes::kNothing) {
    command->add_option("bridge", texts->mac, "MAC address of the bridge, a1:b2:c3:0a:1b:2c")
        ->check(checkMac)
        ->required();
  }
  addTextOption(*command, task.takes, *texts);
  command->callback([&action, &task, texts] {
    action = [&task, texts](const Context& context) { performHueTask(context, task, *texts); };
  });
}

}  // namespace

void declareHue(CLI::App& program, Action& action) {
  CLI::App* hue = program.add_subcommand("hue", "Hue bridges and their bulbs");
  for (const HueTask& task : kHueTasks) declareHueTask(*hue, action, task);
  declareHueList(*hue, action);
}

}  // namespace tembra::cli
