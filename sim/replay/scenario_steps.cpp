#include "sim/replay/scenario_steps.h"

#include <nlohmann/json.hpp>

namespace tembra::sim {
namespace {

std::string jsonText(std::string_view text) {
  return nlohmann::json(text).dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

std::string textOf(const WrittenStep& step) {
  std::string text = "{";
  if (!step.on.empty()) text += "\"on\": " + jsonText(step.on) + ", ";
  if (step.after.count() > 0) {
    text += "\"after\": " + nlohmann::json(static_cast<double>(step.after.count()) / 1000).dump() + ", ";
  }
  const bool isText = step.action != "bridges" && step.action != "stop";
  return text + jsonText(step.action) + ": " + (isText ? jsonText(step.value) : step.value) + "}";
}

}  // namespace

std::string scenarioText(const std::vector<WrittenStep>& steps) {
  std::string text = "[";
  for (const WrittenStep& step : steps) text += (text == "[" ? "\n  " : ",\n  ") + textOf(step);
  return text + "\n]\n";
}

}  // namespace tembra::sim
