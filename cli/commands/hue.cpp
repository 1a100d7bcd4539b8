// tembra-assoc hue: finds, lists, adds, refreshes and removes Hue bridges, and adds their bulbs.
#include <CLI/CLI.hpp>
#include <cctype>
#include <memory>

#include "cli/commands/commands.h"
#include "cli/dialogue/dialogue.h"
#include "cli/dialogue/questions.h"
#include "cli/words/texts.h"

namespace tembra::cli {
namespace {

struct HueTexts {
  std::string mac;
  std::string text;
  int seconds = 60;  ///< for the link button
};

enum class HueTakes { kNothing, kBridge, kBridgeAndBulb, kBridgeAndText };

struct HueTask {
  const char* name;
  const char* help;
  HueTakes takes;
  Result (*start)(Frontend& kit, const HueTexts& texts);
  const char* question;  ///< to be confirmed; null: nothing is lost
  const char* result;    ///< what was done, up to the bridge's MAC address; null: the event says so
};

constexpr HueTask kHueTasks[] = {
    {"discover", "find the Hue bridges of the home's network", HueTakes::kNothing,
     [](Frontend& kit, const HueTexts&) { return kit.hueDiscover(); }, nullptr, nullptr},
    {"add", "add a Hue bridge and its bulbs: press its link button when told to", HueTakes::kBridge,
     [](Frontend& kit, const HueTexts& texts) {
       return kit.hueAddBridge(texts.mac, std::chrono::seconds(texts.seconds));
     },
     nullptr, "Added the Hue bridge "},
    {"add-bulb", "add a bulb of a Hue bridge that was added", HueTakes::kBridgeAndBulb,
     [](Frontend& kit, const HueTexts& texts) { return kit.hueAddBulb(texts.mac, texts.text); }, nullptr,
     "Added the bulb to the Hue bridge "},
    {"refresh", "look for changes of a Hue bridge that was added", HueTakes::kBridgeAndText,
     [](Frontend& kit, const HueTexts& texts) { return kit.hueRefresh(texts.mac, texts.text); }, nullptr,
     "Refreshed the Hue bridge "},
    {"remove", "remove a Hue bridge and its bulbs", HueTakes::kBridge,
     [](Frontend& kit, const HueTexts& texts) { return kit.hueRemove(texts.mac); },
     "Remove the Hue bridge and its bulbs from the home and the device list?", "Removed the Hue bridge "},
    {"list", "list the Hue bridges of the device database and their users", HueTakes::kNothing,
     [](Frontend& kit, const HueTexts&) { return kit.hueList(); }, nullptr, nullptr},
};

void performHueTask(const Context& context, const HueTask& task, const HueTexts& texts) {
  if (task.question != nullptr) confirm(context, task.question);
  std::string call = std::string("hue ") + task.name;
  if (task.takes != HueTakes::kNothing) call += " " + texts.mac;
  if (!texts.text.empty()) call += " " + texts.text;
  Dialogue(context).run(call, [&task, &texts](Frontend& kit) { return task.start(kit, texts); });
  if (task.result != nullptr) context.display.note(task.result + texts.mac + ".");
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
  constexpr std::size_t kLongest = 49;
  if (text.size() > kLongest) return "the text is longer than " + std::to_string(kLongest) + " bytes";
  const std::string fault = text.empty() ? "" : faultOf(text, kLongest);
  return fault.empty() ? "" : "the text " + fault;
}

std::string checkBulb(const std::string& text) { return text.empty() ? "the name is empty" : checkHueText(text); }

void addTextOption(CLI::App& command, HueTakes takes, HueTexts& texts) {
  if (takes == HueTakes::kBridgeAndBulb) {
    command.add_option("bulb", texts.text, "the bulb's name")->check(checkBulb)->required();
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
  if (std::string(task.name) == "add") {
    command->add_option("--wait", texts->seconds, "seconds in which the link button has to be pressed")
        ->capture_default_str()
        ->check(CLI::Range(1, 600));
  }
  command->callback([&action, &task, texts] {
    action = [&task, texts](const Context& context) { performHueTask(context, task, *texts); };
  });
}

}  // namespace

void declareHue(CLI::App& program, Action& action) {
  CLI::App* hue = program.add_subcommand("hue", "Hue bridges and their bulbs");
  for (const HueTask& task : kHueTasks) declareHueTask(*hue, action, task);
}

}  // namespace tembra::cli
