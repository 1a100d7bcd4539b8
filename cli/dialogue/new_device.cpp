#include "cli/dialogue/new_device.h"

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
std::string faultIn(const Found& found, const Wishes& wanted) {
  const bool keepsType = wanted.type == 0;
  if (!keepsType && std::ranges::find(found.choices, wanted.type) == found.choices.end()) {
    const std::string name = isType(wanted.type) ? typeName(wanted.type) : std::to_string(wanted.type);
    return "the device cannot be a " + name + "; possible: " + possible(found) + ".";
  }
  const bool keepsName = wanted.name.empty() || wanted.name == found.name;
  const std::string nameFault = keepsName ? "" : faultOf(wanted.name, found.nameRoom);
  if (!nameFault.empty()) return "the name " + nameFault + ".";
  const std::string placeFault = wanted.place.empty() ? "" : faultOf(wanted.place, found.placeRoom);
  return placeFault.empty() ? "" : "the place " + placeFault + ".";
}

int chooseType(Dialogue& dialogue, const Found& found, const Wishes& wishes) {
  const Options& options = dialogue.context().options;
  if (wishes.type != 0) return wishes.type;
  if (found.choices.size() == 1 || options.yes) return found.type;
  if (options.mayAsk()) return found.choices[askChoice(dialogue, "What is the device?", namesOf(found.choices))];
  throw Failure(kFailed,
                "the device's type must be chosen with --type, or --yes for the first: " + possible(found) + ".");
}

// Empty: the proposed text is kept.
std::string askText(Dialogue& dialogue, const std::string& what, const std::string& proposal, std::size_t room) {
  if (!dialogue.context().options.mayAsk()) return "";
  Display& display = dialogue.context().display;
  display.note(what + ": Enter for " + printable(proposal));
  while (true) {
    const auto answer = ask(dialogue, what);
    if (!answer) throw Failure(kFailed, "the input ended, so the device was not added.");
    const std::string fault = answer->empty() ? "" : faultOf(*answer, room);
    if (fault.empty()) return *answer;
    display.note("The text " + fault + ".");
  }
}

// What a program answers: {"type":"MeterSwitch","name":"Washer","place":"Bath"}, each of them if it likes.
Wishes readAnswer(const std::string& line, const Wishes& proposal) {
  const auto said = nlohmann::json::parse(line, nullptr, false);
  if (!said.is_object()) throw Failure(kUsage, "the answer is no JSON object.");
  Wishes wanted = proposal;
  for (const auto& [name, value] : said.items()) {
    if (name == "type" && value.is_number_integer()) {
      wanted.type = value.get<int>();
    } else if (name == "type" && value.is_string() && parseType(value.get<std::string>())) {
      wanted.type = *parseType(value.get<std::string>());
    } else if (name == "name" && value.is_string()) {
      wanted.name = value.get<std::string>();
    } else if (name == "place" && value.is_string()) {
      wanted.place = value.get<std::string>();
    } else {
      throw Failure(kUsage, "the answer's member " + name + " is none of type, name and place, or has no such value.");
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
      const std::string fault = faultIn(found, wanted);
      if (fault.empty()) return wanted;
      display.complain(fault);
    } catch (const Failure& failure) {
      display.complain(failure.what());
    }
  }
}

Wishes decide(Dialogue& dialogue, const Found& found, Wishes wanted) {
  if (dialogue.context().options.mayAskProgram() && wanted.type == 0) return askProgram(dialogue, found, wanted);
  if (dialogue.context().options.mayAsk()) dropEarlyKeys();
  wanted.type = chooseType(dialogue, found, wanted);
  if (const std::string fault = faultIn(found, wanted); !fault.empty()) throw Failure(kFailed, fault);
  const bool isProposed = wanted.type == found.type;
  if (wanted.name.empty()) {
    wanted.name = askText(dialogue, "Name", isProposed ? found.name : "the usual one", found.nameRoom);
  }
  if (wanted.place.empty()) wanted.place = askText(dialogue, "Place", found.place, found.placeRoom);
  return wanted;
}

}  // namespace

void finishDevice(Dialogue& dialogue, const Found& found, const Wishes& wishes) {
  const Wishes wanted = decide(dialogue, found, wishes);
  dialogue.context().display.command("finish(" + typeName(wanted.type) + ", \"" + wanted.name + "\", \"" +
                                     wanted.place + "\")");
  const Result result = dialogue.kit().finish(wanted.type, wanted.name, wanted.place);
  if (result == Result::nothingRuns) return;  // its end is on its way
  if (result != Result::ok) throw Failure(kFailed, sentence(result));
}

}  // namespace tembra::cli
