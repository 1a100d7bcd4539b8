#include "cli/doctor/facts/flight_recorder.h"

#include <nlohmann/json.hpp>

#include "cli/commands/other_front_end.h"
#include "cli/failure.h"

namespace tembra::cli::doctor {
namespace {

std::vector<std::string> readLines(const std::string& watchPath) {
  try {
    if (auto lines = readHistory(watchPath)) return *lines;
    return readFailure(watchPath).value_or(std::vector<std::string>());
  } catch (const Failure&) {
    return {};  // another check says that the watch socket does not answer
  }
}

}  // namespace

std::vector<nlohmann::json> readFlightRecorder(const std::string& watchPath) {
  std::vector<nlohmann::json> entries;
  for (const std::string& line : readLines(watchPath)) {
    nlohmann::json entry = nlohmann::json::parse(line, nullptr, false);
    if (entry.is_object()) entries.push_back(std::move(entry));
  }
  return entries;
}

}  // namespace tembra::cli::doctor
