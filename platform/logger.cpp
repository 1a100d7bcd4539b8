// Stand-in for the router's log, set by the environment:
//   TEMBRA_LOG        stderr (default), syslog, off, or the path of a file to append to
//   TEMBRA_LOG_LEVEL  detail, progress, warning (default) or error: the least severe lines that are written
#include <fcntl.h>
#include <sys/syscall.h>
#include <syslog.h>
#include <tembra/platform.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <mutex>
#include <new>
#include <string>
#include <string_view>
#include <system_error>

#include "platform/printable.h"

namespace {

/// A level and the system log's priority for it: the more severe, the smaller.
struct Level {
  std::string_view word;
  int priority;
};

// In the order of Logger::Log's numbers, which is not the order of severity.
constexpr std::array kLevels = {
    Level{"progress", LOG_INFO},
    Level{"warning", LOG_WARNING},
    Level{"error", LOG_ERR},
    Level{"detail", LOG_DEBUG},
};
constexpr const Level& kWarning = kLevels[1];
constexpr const Level& kError = kLevels[2];

// An unknown number is unexpected input, and that is an error.
const Level& levelOf(int number) {
  const auto row = static_cast<std::size_t>(number);
  return row < kLevels.size() ? kLevels[row] : kError;
}

/// Where lines go, and which.
struct Target {
  int leastPriority;  ///< negative: no line at all
  bool isSystemLog = false;
  int descriptor = STDERR_FILENO;
};

std::string reasonOf(int error) {
  return error == ELOOP ? "it is a link, which is not followed" : std::generic_category().message(error);
}

// The file that is appended to, or standard error; children of the process get no copy of the file's descriptor. No
// link: where others may write, a link could lead to any file.
int openFile(const std::string& path) {
  const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC | O_NOFOLLOW, 0666);
  if (file >= 0) return file;
  std::fprintf(stderr, "tembra log: cannot write to %s: %s; logging to standard error instead\n", path.c_str(),
               reasonOf(errno).c_str());
  return STDERR_FILENO;
}

std::string setting(const char* variable, const char* otherwise) {
  const char* value = secure_getenv(variable);  // none where the program has other rights than its user
  return value != nullptr && *value != '\0' ? value : otherwise;
}

int leastPriority() {
  const std::string wanted = setting("TEMBRA_LOG_LEVEL", "warning");
  const auto* row = std::find_if(kLevels.begin(), kLevels.end(),
                                 [&wanted](const Level& candidate) { return candidate.word == wanted; });
  if (row != kLevels.end()) return row->priority;
  std::fprintf(stderr, "tembra log: TEMBRA_LOG_LEVEL must be detail, progress, warning or error, not \"%s\"\n",
               wanted.c_str());
  return kWarning.priority;
}

Target openTarget() {
  const std::string wanted = setting("TEMBRA_LOG", "stderr");
  if (wanted == "off") return {-1};
  Target target{leastPriority()};
  target.isSystemLog = wanted == "syslog";
  if (target.isSystemLog) {
    openlog(nullptr, LOG_PID, LOG_DAEMON);
  } else if (wanted != "stderr") {
    target.descriptor = openFile(wanted);
  }
  return target;
}

// The file stays open: a detached thread may log until the very end of the process.
const Target& theTarget() {
  static const Target target = openTarget();
  return target;
}

// "2026-01-31 12:00:00.000 [<process>:<thread>] "
std::string stamp() {
  timespec now{};
  clock_gettime(CLOCK_REALTIME, &now);
  tm local{};
  localtime_r(&now.tv_sec, &local);
  std::array<char, 32> seconds{};
  std::strftime(seconds.data(), seconds.size(), "%Y-%m-%d %H:%M:%S", &local);
  std::array<char, 96> text{};
  std::snprintf(text.data(), text.size(), "%s.%03d [%d:%d] ", seconds.data(), static_cast<int>(now.tv_nsec / 1000000),
                getpid(), static_cast<int>(syscall(SYS_gettid)));  // older C libraries have no gettid
  return text.data();
}

// The lock keeps lines whole when the system takes one in pieces. A line that cannot be written is lost.
void writeWhole(int descriptor, std::string_view line) {
  static std::mutex writing;
  const std::lock_guard lock(writing);
  while (!line.empty()) {
    const ssize_t written = write(descriptor, line.data(), line.size());
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) return;
    line.remove_prefix(static_cast<std::size_t>(written));
  }
}

bool isControl(char character) {
  const auto code = static_cast<unsigned char>(character);
  return code < 0x20 || code == 0x7F;
}

// A text ends its own line at most: control characters at its ends go, what steers a terminal becomes blanks.
std::string oneLine(std::string_view text) {
  while (!text.empty() && isControl(text.front())) text.remove_prefix(1);
  while (!text.empty() && isControl(text.back())) text.remove_suffix(1);
  return tembra::printable(text, ' ');
}

}  // namespace

Logger* Logger::getInstance() {
  static Logger logger;
  theTarget();  // settings and the log file are dealt with now, not at the first line
  return &logger;
}

// No exception leaves the router's log: a line for which there is no memory is lost.
void Logger::Log(int level, const char* text) try {
  const Target& target = theTarget();
  const auto& [word, priority] = levelOf(level);
  if (priority > target.leastPriority) return;
  const std::string line = oneLine(text != nullptr ? text : "(no text)");
  if (target.isSystemLog) return syslog(priority, "%s", line.c_str());
  writeWhole(target.descriptor, stamp().append(word).append(": ").append(line).append("\n"));
} catch (const std::bad_alloc&) {
}
