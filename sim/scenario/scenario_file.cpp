#include <algorithm>
#include <array>
#include <fstream>
#include <iterator>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string_view>

#include "sim/answers/fault.h"
#include "sim/core/raw_datagram.h"
#include "sim/hue/bridges.h"
#include "sim/radio/catalogue_file.h"
#include "sim/scenario/scenario.h"
#include "words/json_text.h"

namespace tembra::sim {
namespace {

using nlohmann::json;
using std::chrono::milliseconds;

[[noreturn]] void refuse(const std::string& sentence) { throw std::runtime_error(sentence); }

std::string textFrom(const json& value) {
  if (!value.is_string()) refuse(value.dump() + " is not a text");
  return value.get<std::string>();
}

milliseconds secondsFrom(const json& value) {
  constexpr double kYear = 365 * 24 * 3600;  // what is far longer does not fit the clock
  if (!value.is_number() || value.get<double>() < 0 || value.get<double>() > kYear) {
    refuse(value.dump() + " is not a number of seconds, a year at most");
  }
  return std::chrono::round<milliseconds>(std::chrono::duration<double>(value.get<double>()));
}

Happening happeningFrom(const json& value) {
  const std::string name = textFrom(value);
  const auto* const row = std::find_if(kHappeningNames.begin(), kHappeningNames.end(),
                                       [&name](const auto& entry) { return entry.second == name; });
  if (row != kHappeningNames.end()) return row->first;
  std::string names;
  for (const auto& entry : kHappeningNames) names.append(names.empty() ? "" : ", ").append(entry.second);
  refuse("nothing called \"" + name + "\" happens; there are " + names);
}

void setMoment(ScenarioStep& step, const std::string& key, const json& value) {
  if (key == "on") step.on = happeningFrom(value);
  if (key == "at") step.at = secondsFrom(value);
  if (key == "after") step.after = secondsFrom(value);
}

std::string requestFrom(const std::string& key, const json& value, const DeviceExists& deviceExists) {
  if (key == "bridges") return key + " " + std::to_string(numberFrom(value, 0, HueBridges::kMost));
  if (key == "stop" || (key == "fail" && value.is_boolean())) {
    if (value != true) refuse("\"" + key + "\" is true or left out");
    return key;
  }
  const std::string argument = textFrom(value);
  if (key == "press" && !deviceExists(argument)) refuse("there is no device \"" + argument + "\"");
  if (key == "send") rawDatagramFrom(argument);
  if (key == "fault" && argument != "none") parseFault(argument);
  return key + " " + argument;
}

constexpr std::array<std::string_view, 3> kMoments{"on", "at", "after"};
constexpr std::array<std::string_view, 10> kActions{"press",   "fail",  "answer", "send",  "note",
                                                    "bridges", "fault", "kill",   "start", "stop"};

bool isOneOf(const auto& names, const std::string& name) {
  return std::find(names.begin(), names.end(), name) != names.end();
}

ScenarioStep stepFrom(const json& entry, const DeviceExists& deviceExists) {
  if (!entry.is_object()) refuse("a step is an object");
  ScenarioStep step;
  for (const auto& [key, value] : entry.get<json::object_t>()) {
    if (isOneOf(kMoments, key)) {
      setMoment(step, key, value);
    } else if (!isOneOf(kActions, key)) {
      refuse("a step has no member \"" + key + "\"");
    } else if (!step.request.empty()) {
      refuse("a step does one thing only");
    } else {
      step.request = requestFrom(key, value, deviceExists);
    }
  }
  if (step.request.empty()) refuse("a step that does nothing");
  if (step.at && (step.on || entry.contains("after"))) refuse(R"("at" goes with neither "on" nor "after")");
  return step;
}

json parsedSteps(const std::filesystem::path& file) {
  std::ifstream stream(file);
  if (!stream.good()) refuse("cannot be read");
  json content = words::parseJson({std::istreambuf_iterator<char>(stream), {}});
  if (!content.is_array()) refuse("is not a list of steps");
  return content;
}

}  // namespace

std::vector<ScenarioStep> loadScenario(const std::filesystem::path& file, const DeviceExists& deviceExists) {
  std::vector<ScenarioStep> steps;
  std::string where;
  try {
    for (const json& entry : parsedSteps(file)) {
      where = " (step " + std::to_string(steps.size() + 1) + ")";
      steps.push_back(stepFrom(entry, deviceExists));
    }
  } catch (const std::exception& failure) {
    throw std::runtime_error("the scenario " + file.string() + where + ": " + failure.what());
  }
  return steps;
}

}  // namespace tembra::sim
