#include "campaign/plan.h"

namespace campaign {
namespace {

const char* nameOf(Goal goal) {
  switch (goal) {
    case Goal::kAdd:
      return "add";
    case Goal::kRemove:
      return "remove";
    case Goal::kCancel:
      return "cancel";
    case Goal::kReset:
      return "reset";
    case Goal::kHueDiscover:
      return "hue discover";
    case Goal::kHueAdd:
      return "hue add";
    case Goal::kHueBulb:
      return "hue add-bulb";
    case Goal::kHueRefresh:
      return "hue refresh";
    case Goal::kHueRemove:
      return "hue remove";
    case Goal::kNestLink:
      return "nest link";
    case Goal::kNestUnlink:
      return "nest unlink";
  }
  return "";
}

}  // namespace

std::string goalText(const Step& step) {
  std::string text = nameOf(step.goal);
  for (const std::string* word : {&step.word, &step.name}) {
    if (!word->empty()) text.append(" ").append(*word);
  }
  return text.append(" as ").append(step.role);
}

std::string Plan::text() const {
  std::string text = "seed " + std::to_string(seed) + ", " + flow->name + ": " + scenario->name + ", latency " +
                     std::to_string(latencyMs) + " ms\n";
  for (const Step& step : steps) {
    text.append("  ").append(goalText(step)).append("\n");
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
