#include "cli/dialogue/new_device.h"

#include <tembra/vocabulary.h>

#include <algorithm>
#include <nlohmann/json.hpp>

#include "cli/dialogue/questions.h"
#include "cli/failure.h"
#include "cli/words/device_types.h"
#include "cli/words/texts.h"
#include "platform/printable.h"

namespace tembra::cli {
namespace {

std::vector<std::string> namesOf(const std::vector<int>& types) {
  std::vector<std::string> names;
  std::ranges::transform(types, std::back_inserter(names), typeName);
  return names;
}

std::string possible(const Found& found) {
  std::string text;
  for (const int type : found.choices) text += (text.empty() ? "" : ", ") + typeName(type);
  return text;
}

// Why the device cannot get this; empty when it can.
std::string faultInType(const Found& found, int type) {
  if (type == 0 || std::ranges::find(found.choices, type) != found.choices.end()) return "";
  const std::string name = isType(type) ? typeName(type) : std::to_string(type);
  return "the device cannot be a " + name + "; possible: " + possible(found) + ".";
}

std::string faultInText(const std::string& what, const std::string& text, std::size_t room) {
  const std::string fault = text.empty() ? "" : faultOf(text, room);
  return fault.empty() ? "" : "the " + what + " " + fault + ".";
}

std::string faultInName(const Found& found, const std::string& name) {
  return name == found.name ? "" : faultInText("name", name, found.nameRoom);
}

// Takes out of the wishes what the device cannot get, and says why.
std::vector<std::string> dropFaults(const Found& found, Wishes& wanted) {
  std::vector<std::string> faults;
  const auto check = [&faults](const std::string& fault, auto& wish) {
    if (fault.empty()) return;
    faults.push_back(fault);
    wish = {};
  };
  check(faultInType(found, wanted.type), wanted.type);
  check(faultInName(found, wanted.name), wanted.name);
  check(faultInText("place", wanted.place, found.placeRoom), wanted.place);
  return faults;
}

int askType(Dialogue& dialogue, const Found& found) {
  return found.choices[askChoice(dialogue, "What is the device?", namesOf(found.choices))];
}

int chooseType(Dialogue& dialogue, const Found& found, const Wishes& wishes) {
  const Options& options = dialogue.context().options;
  if (wishes.type != 0) return wishes.type;
  if (found.choices.size() == 1 || options.yes) return found.type;
  if (options.mayAsk()) return askType(dialogue, found);
  throw Failure(kFailed,
                "the device's type must be chosen with --type, or --yes for the first: " + possible(found) + ".");
}

// Empty: nobody can be asked, and the kit proposes.
std::string askText(Dialogue& dialogue, const std::string& what, const std::string& proposal, std::size_t room) {
  if (!dialogue.context().options.mayAsk()) return "";
  Display& display = dialogue.context().display;
  display.note(what + ": Enter for " + printable(proposal));
  while (true) {
    const auto answer = ask(dialogue, what);
    if (!answer) throw Failure(kFailed, "the input ended, so the device was not added.");
    if (answer->empty()) return proposal;
    const std::string fault = faultOf(*answer, room);
    if (fault.empty()) return *answer;
    display.note("The text " + fault + ".");
  }
}

int typeIn(const nlohmann::json& value) {
  const bool canBeType = value.is_string() || value.is_number_integer();
  const auto type = canBeType ? parseType(value.is_string() ? value.get<std::string>() : value.dump()) : std::nullopt;
  if (!type) throw Failure(kUsage, value.dump() + " is neither the name nor the number of a device type.");
  return *type;
}

std::string textIn(const nlohmann::json& value, const std::string& name) {
  if (!value.is_string()) throw Failure(kUsage, "the answer's \"" + name + "\" is no text.");
  return value.get<std::string>();
}

// What a program answers: {"type":"MeterSwitch","name":"Washer","place":"Bath"}, each of them if it likes.
Wishes readAnswer(const std::string& line, const Wishes& proposal) {
  const auto said = nlohmann::json::parse(line, nullptr, false);
  if (!said.is_object()) throw Failure(kUsage, "the answer is no JSON object.");
  Wishes wanted = proposal;
  for (const auto& [name, value] : said.items()) {
    if (name == "type") {
      wanted.type = typeIn(value);
    } else if (name == "name") {
      wanted.name = textIn(value, name);
    } else if (name == "place") {
      wanted.place = textIn(value, name);
    } else {
      throw Failure(kUsage, "the answer has a member \"" + name + "\"; possible: type, name, place, cancel.");
    }
  }
  return wanted;
}

// The event has told the program what there is to choose from.
Wishes askProgram(Dialogue& dialogue, const Found& found, const Wishes& proposal) {
  Display& display = dialogue.context().display;
  while (true) {
    display.ask({{"question", "device"}, {"members", {"type", "name", "place", "cancel"}}});
    const auto line = dialogue.answer();
    if (!line) throw Failure(kFailed, "the input ended, so the device was not added.");
    try {
      Wishes wanted = readAnswer(*line, proposal);
      const std::vector<std::string> faults = dropFaults(found, wanted);
      if (faults.empty()) return wanted;
      for (const std::string& fault : faults) display.complain(fault);
    } catch (const Failure& failure) {
      display.complain(failure.what());
    }
  }
}

// As the library names it: after its type, unless that is open, with the number that stands in the proposed name.
std::string usualName(const Found& found, const Wishes& wanted) {
  const std::size_t number = found.name.rfind(" #");
  const bool staysSo = wanted.isKnown || wanted.type == found.type || found.type == DEVTYPE_GENERIC_DEVICE;
  return staysSo || number == std::string::npos ? found.name : typeName(wanted.type) + found.name.substr(number);
}

Wishes askPerson(Dialogue& dialogue, const Found& found, Wishes wanted) {
  wanted.type = chooseType(dialogue, found, wanted);
  if (wanted.name.empty()) wanted.name = askText(dialogue, "Name", usualName(found, wanted), found.nameRoom);
  if (wanted.place.empty()) wanted.place = askText(dialogue, "Place", found.place, found.placeRoom);
  return wanted;
}

// Whoever can be asked is asked for what does not fit: the device has joined already.
Wishes decide(Dialogue& dialogue, const Found& found, const Wishes& wishes) {
  const Context& context = dialogue.context();
  const bool mayAsk = context.options.mayAsk() || context.options.mayAskProgram();
  Wishes wanted = wishes;
  const std::vector<std::string> faults = dropFaults(found, wanted);
  if (!faults.empty() && !mayAsk) throw Failure(kFailed, faults.front());
  for (const std::string& fault : faults) context.display.complain(fault);
  if (context.options.mayAskProgram()) {
    return wanted.type == 0 || !faults.empty() ? askProgram(dialogue, found, wanted) : wanted;
  }
  if (context.options.mayAsk()) dropEarlyKeys();
  if (wanted.type != wishes.type) wanted.type = askType(dialogue, found);
  return askPerson(dialogue, found, wanted);
}

}  // namespace

void finishDevice(Dialogue& dialogue, const Found& found, const Wishes& wishes) {
  const Wishes wanted = decide(dialogue, found, wishes);
  if (found.type == DEVTYPE_GENERIC_DEVICE && wanted.type != found.type) {
    dialogue.context().display.note("It stays a GenericDevice in the list: " + typeName(wanted.type) +
                                    " says what its values are.");
  }
  dialogue.context().display.command("finish(" + typeName(wanted.type) + ", \"" + wanted.name + "\", \"" +
                                     wanted.place + "\")");
  const Result result = dialogue.kit().finish(wanted.type, wanted.name, wanted.place);
  if (result == Result::nothingRuns) return;  // its end is on its way
  if (result != Result::ok) throw Failure(kFailed, sentence(result));
}

}  // namespace tembra::cli
