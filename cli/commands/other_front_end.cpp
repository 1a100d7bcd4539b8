#include "cli/commands/other_front_end.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <tembra/history.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <nlohmann/json.hpp>
#include <sstream>

#include "cli/display/json_line.h"
#include "cli/failure.h"
#include "platform/descriptor.h"

namespace tembra::cli {
namespace {

constexpr int kAnswerMilliseconds = 1000;

bool isEndOfHistory(const std::string& line) { return line.find(R"("history":)") != std::string::npos; }
// Anything may stand there: a pipe would wait for its writer, and a large file would fill the memory.
std::string keptText(const Descriptor& file, const std::string& path) {
  struct stat status = {};
  if (!file.valid() || fstat(file.get(), &status) != 0) {
    throw Failure(kFailed, path + " cannot be read: " + std::strerror(errno) + ".");
  }
  if (!S_ISREG(status.st_mode) || status.st_size > TEMBRA_HISTORY_SIZE) {
    throw Failure(kFailed, path + " is no flight recorder.");
  }
  std::string text(static_cast<std::size_t>(status.st_size), '\0');
  const ssize_t count = read(file.get(), text.data(), text.size());
  text.resize(count < 0 ? 0 : static_cast<std::size_t>(count));
  return text;
}

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
  const Descriptor file(open(path.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
  if (!file.valid() && errno == ENOENT) return std::nullopt;
  std::istringstream text(keptText(file, path));
  std::vector<std::string> lines;
  for (std::string line; std::getline(text, line);) lines.push_back(line);
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
