#include "cli/commands/other_front_end.h"

#include <cerrno>
#include <cstring>
#include <fstream>
#include <nlohmann/json.hpp>

#include "cli/display/json_line.h"
#include "cli/failure.h"

namespace tembra::cli {
namespace {

constexpr int kAnswerMilliseconds = 1000;

bool isEndOfHistory(const std::string& line) { return line.find(R"("history":)") != std::string::npos; }
bool isEntry(const std::string& line) { return line.rfind(R"({"schema":1,"entry":)", 0) == 0; }

}  // namespace

bool isNobodyThere(int error) { return error == ENOENT || error == ECONNREFUSED; }

std::optional<std::vector<std::string>> readHistory(const std::string& watchPath) {
  std::vector<std::string> lines;
  const Watch watch(tembra_watch_open(watchPath.c_str()));
  int error = watch ? tembra_watch_history(watch.get()) : errno;
  while (error == 0) {
    const char* const line = tembra_watch_next(watch.get(), kAnswerMilliseconds);
    if (line == nullptr) {
      error = errno;
    } else if (isEntry(line)) {
      lines.emplace_back(line);
    } else if (isEndOfHistory(line)) {
      return lines;
    }
  }
  if (isNobodyThere(error) || error == ECONNRESET) return std::nullopt;
  throw Failure(kFailed, watchPath + " does not say what happened: " + std::strerror(error) + ".");
}

std::optional<std::vector<std::string>> readFailure(const std::string& watchPath) {
  const std::string path = watchPath + TEMBRA_FAILURE_SUFFIX;
  std::ifstream file(path);
  if (!file && errno == ENOENT) return std::nullopt;
  std::vector<std::string> lines;
  for (std::string line; std::getline(file, line);) lines.push_back(line);
  if (!file.eof()) throw Failure(kFailed, path + " cannot be read: " + std::strerror(errno) + ".");
  return lines;
}

std::string statusEvent(const tembra_holder* holder) {
  nlohmann::ordered_json status = {{"holder", nullptr}};
  if (holder != nullptr) {
    status["holder"] = {{"role", holder->role},   {"program", holder->program},     {"pid", holder->pid},
                        {"since", holder->since}, {"operation", holder->operation}, {"phase", holder->phase}};
  }
  return jsonEvent("status", status);
}

}  // namespace tembra::cli
