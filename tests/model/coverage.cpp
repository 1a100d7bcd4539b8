#include "coverage.h"

#include <algorithm>
#include <map>

#include "operations.h"

namespace oracle {
namespace {

constexpr int kEvents[] = {2, 3, 4, 5, 6, 7, 9, 11, 12, 21, 22, 23, 25, 26, 27, 28, 29, 30, 41, 42, 43, 44, 45, 46};
constexpr char kEventHead[] = "event ";

// What sends. Each of them has to have failed to send, too.
constexpr const char* kSending[] = {"addDevZigbeeZwave", "removeDevZigbeeZwave",
                                    "sendCancelTo",      "doResetFor",
                                    "addingDone",        "Hue_initiateAdd",
                                    "Hue_addBridge",     "Hue_addDev",
                                    "Hue_refreshBridge", "Hue_remove",
                                    "Nest_add",          "Nest_remove",
                                    "datagram",          "wait"};

std::string failedSend(const std::string& operation) { return operation + ", not sent"; }

// A step, as it showed itself.
struct Seen {
  const Step& step;
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
  /// Of a ZigBee answer, which is known by its sender only; -1: the step is none.
  [[nodiscard]] int status() const {
    constexpr std::size_t statusAt = 10;
    const bool isAnswer = step.text == "127.255.255.253" && step.bytes.size() > statusAt;
    return isAnswer ? step.bytes[statusAt] : -1;
  }
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
      {"status 1", [](const Seen& s) { return s.status() == 1; }},
      {"status 2 or 11", [](const Seen& s) { return s.status() == 2 || s.status() == 11; }},
      {"status 3", [](const Seen& s) { return s.status() == 3; }},
      {"status 6", [](const Seen& s) { return s.status() == 6; }},
      {"status 10, classified, with sub-types", [](const Seen& s) { return s.status() == 10; }},
      {"status 10, classified, without sub-types", [](const Seen& s) { return s.status() == 10; }},
      {"status 10, not classified", [](const Seen& s) { return s.status() == 10; }},
      {"any other status", [](const Seen& s) { return s.status() >= 0; }},
      {"status 2, known address", [](const Seen& s) { return s.status() == 2; }},
      {"status 2, unknown address", [](const Seen& s) { return s.status() == 2; }},
      {"status 12", [](const Seen& s) { return s.status() == 12; }},
      {"neither 2 nor 12", [](const Seen& s) { return s.status() >= 0 && s.status() != 2 && s.status() != 12; }},
      {"any status", [](const Seen& s) { return s.status() >= 0; }},
      {"time-out, idle 0", [](const Seen& s) { return s.isTimeOut() && s.before.idle == 0; }},
      {"time-out, idle 1", [](const Seen& s) { return s.isTimeOut() && s.before.idle == 1; }},
      {"datagram of the HA server", [](const Seen& s) { return s.has("Got data from HA_Server"); }},
      {"datagram of a stranger", [](const Seen& s) { return s.has("received command from unknown server"); }},
  };
  return all;
}

bool isIn(const std::string& cell, int state) {
  if (cell == "any state") return true;
  if (cell == "any other state") return state != 1 && state != 2;  // of the ZigBee answers
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
  for (const char* const section : {"ZigBee answers", "Time-outs and strangers"}) {
    for (const Transition& row : transitionsOf(readSection(section))) rows.push_back(row);
  }
  return rows;
}

}  // namespace

Coverage::Coverage() : rows_(rowsOfThePage()) {
  for (const Transition& row : rows_) times_[row.edge] = 0;
  for (const int code : kEvents) times_[kEventHead + std::to_string(code)] = 0;
  for (const Operation& each : operations()) times_[each.name] = 0;
  for (const char* const each : kSending) times_[failedSend(each)] = 0;
}

void Coverage::note(const Model& before, const Step& step, const std::vector<Effect>& seen, const Model& after) {
  ++steps_;
  ++times_[step.operation->name];
  for (const Step& inner : step.inner) ++times_[inner.operation->name];
  const Seen shown{step, before, after, seen};
  if (shown.has(" -> EPERM")) ++times_[failedSend(step.operation->name)];
  for (const int code : eventsIn(seen)) ++times_[kEventHead + std::to_string(code)];
  if (!before.callback || before.inCallback) return;  // a callback may change what the page says
  for (const Transition& row : rows_) {
    if (holds(row, shown)) ++times_[row.edge];
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
