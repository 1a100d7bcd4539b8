// What the library asks of the Hue and the Nest server.
#include <algorithm>
#include <memory>

#include "daemon_check/exercise.h"
#include "daemon_check/record_faults.h"
#include "sim/core/record_bytes.h"
#include "tembra/vocabulary.h"

namespace tembra::daemon_check {
namespace {

using namespace std::chrono_literals;

constexpr std::chrono::seconds kPatience = 180s;  // of the library, for both servers

/// The bridge of the exercises: the first one that is found.
using BridgeId = std::shared_ptr<std::string>;

Command hueCommand(HueCommandCode code, const BridgeId& bridge, const char* argument = "") {
  return [=] {
    HueCommand command{};
    command.command = code;
    sim::setText(command.bridgeId, *bridge);
    sim::setText(command.argument, argument);
    return sim::bytesOf(command);
  };
}

Judgement unexpected(int number, int due) {
  return {Course::kOver, {"result " + std::to_string(number) + " where " + std::to_string(due) + " is due"}};
}

Owed bridgeList(const BridgeId& bridge) {
  return {"the list", kPatience, [bridge](const Datagram& datagram) -> Judgement {
            const auto answer = sim::recordFrom<HueAnswer>(datagram);
            if (answer.type != HUE_BRIDGES_FOUND) return unexpected(answer.type, HUE_BRIDGES_FOUND);
            Faults faults = faultsIn(answer);
            if (answer.count == 0) faults.emplace_back("no bridge is found: nothing more can be checked");
            if (!faults.empty()) return {Course::kOver, faults};
            *bridge = firstBridgeId(answer);
            return {Course::kNextAnswer, {}};
          }};
}

Owed hueResult(HueResultType due) {
  return {"the result", kPatience, [due](const Datagram& datagram) -> Judgement {
            const int type = sim::recordFrom<HueAnswer>(datagram).type;
            return type == due ? Judgement{Course::kNextAnswer, {}} : unexpected(type, due);
          }};
}

Command nestCommand(NestCommandCode code, const char* text) {
  NestCommand command{};
  command.command = code;
  sim::setText(command.text, text);
  return [bytes = sim::bytesOf(command)] { return bytes; };
}

// Which number stands for success is the daemon's own business.
Owed nestResult() {
  return {"the answer", kPatience, [](const Datagram& datagram) -> Judgement {
            const auto answer = sim::recordFrom<NestAnswer>(datagram);
            if (answer.command == NEST_ANSWER_100 ||
                (answer.command >= NEST_ANSWER_121 && answer.command < NEST_ANSWER_124)) {
              return {Course::kNextAnswer, {}};
            }
            if (answer.command != NEST_ANSWER_124)
              return {Course::kOver, {"an answer without a meaning: " + std::to_string(answer.command)}};
            if (answer.status == 0) return {Course::kNextAnswer, {}};
            return {Course::kOver,
                    {answer.status == -1 ? "the daemon says that it failed (answer 124, status -1)"
                                         : "a status of answer 124 without a meaning"}};
          }};
}

}  // namespace

// Which of 8 and 9 ends a refresh and which a removal is not known: only what has one meaning is asked for.
Subject hueSubject() {
  const auto bridge = std::make_shared<std::string>();
  const auto none = std::make_shared<std::string>();
  return {sim::kHueServer,
          sizeof(HueCommand),
          sizeof(HueAnswer),
          {{"discover", "", {hueCommand(HUE_DISCOVER, none)}, {bridgeList(bridge)}, {}},
           {"add",
            "press the link button of the bridge",
            {hueCommand(HUE_ADD_BRIDGE, bridge)},
            {hueResult(HUE_BRIDGE_ADDED)},
            {}},
           {"add a bulb", "", {hueCommand(HUE_ADD_BULB, bridge, "Checked bulb")}, {hueResult(HUE_BULB_ADDED)}, {}}}};
}

Subject nestSubject() {
  return {sim::kNestServer,
          sizeof(NestCommand),
          sizeof(NestAnswer),
          {{"link", "", {nestCommand(NEST_LINK, "code-of-the-check")}, {nestResult()}, {}},
           {"unlink", "", {nestCommand(NEST_UNLINK, "")}, {nestResult()}, {}}}};
}

}  // namespace tembra::daemon_check
