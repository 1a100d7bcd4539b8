#include "coverage.h"

#include <algorithm>
#include <map>

#include "operations.h"

namespace oracle {
namespace {

constexpr int kEvents[] = {2, 3, 4, 5, 6, 7, 9, 11, 12, 21, 22, 23, 25, 26, 27, 28, 29, 30, 41, 42, 43, 44, 45, 46};
constexpr char kEventHead[] = "event ";

// A step, as it showed itself.
struct Seen {
  const Model& before;
  const Model& after;
  const std::vector<Effect>& effects;

  [[nodiscard]] bool has(const std::string& part) const {
    return std::any_of(effects.begin(), effects.end(),
                       [&](const Effect& effect) { return effect.line.find(part) != std::string::npos; });
  }
  [[nodiscard]] bool isAnswer() const { return has("Received Packet from Z-wave"); }
  [[nodiscard]] bool isTimeOut() const { return has("Didn't get packet"); }
  [[nodiscard]] bool isKnown() const { return has("Removing Zwave device"); }
  [[nodiscard]] int node() const { return after.zwReceived.byte(0); }
  [[nodiscard]] bool isNoNode() const { return node() == 0 || node() == 255; }
};

using Condition = bool (*)(const Seen&);

const std::map<std::string, Condition>& conditions() {
  static const std::map<std::string, Condition> all = {
      {"any answer", [](const Seen& s) { return s.isAnswer(); }},
      {"node 255", [](const Seen& s) { return s.isAnswer() && s.node() == 255; }},
      {"any other node, also 0", [](const Seen& s) { return s.isAnswer() && s.node() != 255; }},
      {"node 0 or 255", [](const Seen& s) { return s.isAnswer() && s.isNoNode() && !s.isKnown(); }},
      {"known node", [](const Seen& s) { return s.isAnswer() && s.isKnown(); }},
      {"known node, also 0 or 255", [](const Seen& s) { return s.isAnswer() && s.isKnown(); }},
      {"any other node", [](const Seen& s) { return s.isAnswer() && !s.isNoNode() && !s.isKnown(); }},
      {"not classified", [](const Seen& s) { return s.has("zw_createDevice is unsuccessful"); }},
      {"classified, with sub-types", [](const Seen& s) { return s.has("zw_createDevice is successful"); }},
      {"classified, without sub-types", [](const Seen& s) { return s.has("zw_createDevice is successful"); }},
      {"time-out, idle 0", [](const Seen& s) { return s.isTimeOut() && s.before.idle == 0; }},
      {"time-out, idle 1", [](const Seen& s) { return s.isTimeOut() && s.before.idle == 1; }},
      {"datagram of the HA server", [](const Seen& s) { return s.has("Got data from HA_Server"); }},
      {"datagram of a stranger", [](const Seen& s) { return s.has("received command from unknown server"); }},
  };
  return all;
}

bool isIn(const std::string& cell, int state) {
  if (cell == "any state") return true;
  if (cell == "unassigned") return state == 7 || state > 8 || state < 0;
  return std::stoi(cell) == state;
}

bool becomes(const std::string& cell, int before, int after) {
  return after == (cell == "unchanged" ? before : std::stoi(cell));
}

std::vector<int> eventsIn(const std::vector<Effect>& effects) {
  std::vector<int> codes;
  for (const Effect& effect : effects) {
    if (effect.line.rfind(kEventHead, 0) == 0) codes.push_back(std::stoi(effect.line.substr(sizeof kEventHead - 1)));
  }
  return codes;
}

bool tells(const std::string& cell, const std::vector<int>& events) {
  if (cell == "—") return events.empty();
  return events.size() == 1 && events.front() == std::stoi(cell);
}

bool holds(const Transition& row, const Seen& seen) {
  const auto condition = conditions().find(row.condition);
  return condition != conditions().end() && isIn(row.from, seen.before.state) && condition->second(seen) &&
         tells(row.event, eventsIn(seen.effects)) && becomes(row.to, seen.before.state, seen.after.state) &&
         becomes(row.idle, seen.before.idle, seen.after.idle) &&
         becomes(row.timeout, seen.before.timeout, seen.after.timeout);
}

// The rows whose conditions can be told from a step.
std::vector<Transition> rowsOfThePage() {
  std::vector<Transition> rows = transitionsOf(readSection("Z-Wave answers"));
  for (const Transition& row : transitionsOf(readSection("Time-outs and strangers"))) rows.push_back(row);
  return rows;
}

}  // namespace

Coverage::Coverage() : rows_(rowsOfThePage()) {
  for (const Transition& row : rows_) times_[row.edge] = 0;
  for (const int code : kEvents) times_[kEventHead + std::to_string(code)] = 0;
  for (const Operation& each : operations()) times_[each.name] = 0;
}

void Coverage::note(const Model& before, const Step& step, const std::vector<Effect>& seen, const Model& after) {
  ++steps_;
  ++times_[step.operation->name];
  for (const Step& inner : step.inner) ++times_[inner.operation->name];
  for (const int code : eventsIn(seen)) ++times_[kEventHead + std::to_string(code)];
  if (!before.callback || before.inCallback) return;  // a callback may change what the page says
  for (const Transition& row : rows_) {
    if (holds(row, {before, after, seen})) ++times_[row.edge];
  }
}

std::vector<std::string> Coverage::unreached() const {
  std::vector<std::string> missing;
  if (rows_.empty()) missing.emplace_back("the page of the state machine");
  for (const auto& [what, times] : times_) {
    if (times == 0) missing.push_back(what);
  }
  return missing;
}

std::string Coverage::text() const {
  std::string text;
  for (const auto& [what, times] : times_) text += std::to_string(times) + " times " + what + "\n";
  return text;
}

}  // namespace oracle
