#include "cli/commands/watched_line.h"

#include <map>
#include <nlohmann/json.hpp>
#include <tembra/frontend_event.hpp>

#include "cli/display/event_text.h"

namespace tembra::cli {
namespace {

using Json = nlohmann::json;

int intOf(const Json& object, const char* member) {
  const auto found = object.find(member);
  return found != object.end() && found->is_number_integer() ? found->get<int>() : 0;
}

Json memberOf(const Json& object, const char* member) {
  const auto found = object.is_object() ? object.find(member) : object.end();
  return found == object.end() ? Json() : *found;
}

int typeOf(const Json& object) { return object.is_object() ? intOf(object, "number") : 0; }

Event::Detail foundIn(const Json& said) {
  Found found{};
  found.type = typeOf(memberOf(said, "type"));
  for (const Json& choice : memberOf(said, "choices")) found.choices.push_back(typeOf(choice));
  return found;
}

Event::Detail bridgesIn(const Json& said) {
  Bridges list;
  for (const Json& bridge : memberOf(said, "bridges")) {
    if (!bridge.is_object()) continue;
    list.bridges.push_back({textOf(bridge, "mac"), textOf(bridge, "address"), textOf(bridge, "user")});
  }
  return list;
}

template <typename Kind>
Event::Detail departureIn(const Json& said) {
  return Kind{intOf(said, "id"), textOf(said, "name")};
}

// The kinds of events that have a sentence of their own for everybody.
const std::map<std::string, Event::Detail (*)(const Json&)> kKinds = {
    {"waiting", [](const Json&) -> Event::Detail { return Waiting{}; }},
    {"answered", [](const Json&) -> Event::Detail { return Answered{}; }},
    {"reading", [](const Json&) -> Event::Detail { return Reading{}; }},
    {"found", foundIn},
    {"added",
     [](const Json& said) -> Event::Detail {
       return Added{intOf(said, "id"), typeOf(memberOf(said, "type")), textOf(said, "name"), textOf(said, "place")};
     }},
    {"removing", departureIn<Removing>},
    {"removed", departureIn<Removed>},
    {"bridges", bridgesIn},
    {"account", [](const Json& said) -> Event::Detail { return Account{memberOf(said, "linked") == true}; }},
};

Radio radioOf(const std::string& name) {
  if (name == radioText(TEMBRA_RADIO_ZIGBEE)) return TEMBRA_RADIO_ZIGBEE;
  return name == radioText(TEMBRA_RADIO_ZWAVE) ? TEMBRA_RADIO_ZWAVE : TEMBRA_RADIO_OTHER;
}

std::string sentenceOf(const Json& said) {
  const std::string kind = textOf(said, "event");
  if (const auto row = kKinds.find(kind); row != kKinds.end()) {
    Event event{};
    event.operation = numberOf<Operation>(tembra_operation_name, textOf(said, "operation"));
    event.phase = numberOf<Phase>(tembra_phase_name, textOf(said, "phase"));
    event.radio = radioOf(textOf(said, "radio"));
    event.detail = row->second(said);
    return eventText(event);
  }
  if (kind == "link-button") return awaitedText(TEMBRA_OPERATION_NONE, TEMBRA_PHASE_LINK_BUTTON) + ".";
  if (kind == "bridge-linked") return "Added the Hue bridge.";
  if (kind == "bulb-added") return "Added the Hue bulb.";
  if (kind == "devices") return "Listed " + std::to_string(intOf(said, "count")) + " devices.";
  if (kind == "step") return std::to_string(intOf(said, "done")) + " of " + std::to_string(intOf(said, "all")) + " s.";
  const std::string advice = textOf(said, "advice");
  const std::string text = textOf(said, "text");
  return text.empty() ? kind + "." : text + (advice.empty() ? "" : " " + advice);
}

std::string holderText(const Json& holder, const Json& state) {
  const std::string operation = state.is_object() ? textOf(state, "operation") : "";
  const std::string phase = state.is_object() ? textOf(state, "phase") : "";
  const std::string awaited =
      awaitedText(numberOf<Operation>(tembra_operation_name, operation), numberOf<Phase>(tembra_phase_name, phase));
  return textOf(holder, "program") + " has the connection: " + operation + "." +
         (awaited.empty() ? "" : " " + awaited + ".");
}

}  // namespace

std::string textOf(const Json& object, const char* member) {
  const auto found = object.find(member);
  return found != object.end() && found->is_string() ? found->get<std::string>() : "";
}

std::string watchedText(const std::string& line) {
  const Json said = Json::parse(line, nullptr, false);
  if (!said.is_object()) return line;
  const Json holder = memberOf(said, "holder");
  if (holder.is_object()) return holderText(holder, memberOf(said, "state"));
  return textOf(said, "operation") + ": " + sentenceOf(said);
}

}  // namespace tembra::cli
