#include "cli/doctor/facts/flight_recorder.h"

#include <sys/stat.h>
#include <tembra/watch.h>

#include <nlohmann/json.hpp>

#include "cli/commands/other_front_end.h"
#include "cli/failure.h"

namespace tembra::cli::doctor {
namespace {

// A pipe in the file's place would wait for its writer.
bool hasFailureFile(const std::string& watchPath) {
  struct stat status = {};
  return lstat((watchPath + TEMBRA_FAILURE_SUFFIX).c_str(), &status) == 0 && S_ISREG(status.st_mode);
}

std::vector<std::string> readLines(const std::string& watchPath) {
  try {
    if (auto lines = readHistory(watchPath)) return *lines;
    if (hasFailureFile(watchPath)) return readFailure(watchPath).value_or(std::vector<std::string>());
  } catch (const Failure&) {
    return {};  // another check says that the watch socket does not answer
  }
  return {};
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
