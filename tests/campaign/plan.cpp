#include "campaign/plan.h"

namespace campaign {
namespace {

std::vector<std::string> commandOf(const Step& step) {
  switch (step.goal) {
    case Goal::kAdd:
      return {"add", "--name", step.name};
    case Goal::kRemove:
      return {"remove"};
    case Goal::kCancel:
      return {"cancel", step.word};
    case Goal::kReset:
      return {"reset", step.word};
    case Goal::kHueDiscover:
      return {"hue", "discover"};
    case Goal::kHueAdd:
      return {"hue", "add", kBridgeMac};
    case Goal::kHueBulb:
      return {"hue", "add-bulb", kBridgeMac, step.word};
    case Goal::kHueRefresh:
      return {"hue", "refresh", kBridgeMac};
    case Goal::kHueRemove:
      return {"hue", "remove", kBridgeMac};
    case Goal::kNestLink:
      return {"nest", "link", "code"};
    case Goal::kNestUnlink:
      return {"nest", "unlink"};
  }
  return {};
}

}  // namespace

std::vector<std::string> argumentsOf(const Step& step) {
  std::vector<std::string> arguments = {"tembra-assoc", "--json", "--yes", "--role", step.role};
  const std::vector<std::string> command = commandOf(step);
  arguments.insert(arguments.end(), command.begin(), command.end());
  return arguments;
}

std::string Plan::text() const {
  std::string text = "seed " + std::to_string(seed) + ", " + flow->name + ": " + scenario->name + ", latency " +
                     std::to_string(latencyMs) + " ms\n";
  for (const Step& step : steps) {
    text.append(" ");
    for (const std::string& argument : argumentsOf(step)) text.append(" ").append(argument);
    text.append("\n");
    for (const Action& action : step.actions) {
      text.append("    ").append(std::to_string(action.after / kMillisecond)).append(" ms  ").append(action.request) +=
          "\n";
    }
    if (step.interrupt)
      text.append("    ").append(std::to_string(*step.interrupt / kMillisecond)).append(" ms  interrupt\n");
  }
  return text;
}

}  // namespace campaign
