// Stand-in for the router's log, set by the environment:
//   TEMBRA_LOG        stderr (default), syslog, off, or the path of a file to append to
//   TEMBRA_LOG_LEVEL  detail, progress, warning (default) or error: the least severe lines that are written
#include <spdlog/logger.h>
#include <spdlog/pattern_formatter.h>
#include <spdlog/sinks/stdout_sinks.h>
#include <spdlog/sinks/syslog_sink.h>
#include <syslog.h>
#include <tembra/platform.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <string_view>
#include <system_error>

namespace {

using spdlog::level::level_enum;

struct Severity {
  std::string_view word;
  level_enum severity;
};

// In the order of Logger::Log's numbers, which is not the order of severity.
constexpr std::array kSeverities = {
    Severity{"progress", level_enum::info},
    Severity{"warning", level_enum::warn},
    Severity{"error", level_enum::err},
    Severity{"detail", level_enum::debug},
};

// An unknown number is unexpected input, and that is an error.
level_enum severityOf(int number) {
  const auto row = static_cast<std::size_t>(number);
  return row < kSeverities.size() ? kSeverities[row].severity : level_enum::err;
}

class LevelWord : public spdlog::custom_flag_formatter {
 public:
  void format(const spdlog::details::log_msg& line, const std::tm& /*time*/, spdlog::memory_buf_t& out) override {
    for (const Severity& row : kSeverities) {
      if (row.severity == line.level) out.append(row.word.data(), row.word.data() + row.word.size());
    }
  }
  [[nodiscard]] std::unique_ptr<custom_flag_formatter> clone() const override { return std::make_unique<LevelWord>(); }
};

std::unique_ptr<spdlog::formatter> lineFormat() {
  auto format = std::make_unique<spdlog::pattern_formatter>();
  format->add_flag<LevelWord>('w').set_pattern("%Y-%m-%d %H:%M:%S.%e [%P:%t] %w: %v");
  return format;
}

// Standard error, or the file that is appended to; children of the process get no copy of its descriptor.
FILE* openStream(const std::string& target) {
  if (target == "stderr") return stderr;
  FILE* file = std::fopen(target.c_str(), "ae");
  if (file != nullptr) return file;
  std::fprintf(stderr, "tembra log: cannot write to %s: %s; logging to standard error instead\n", target.c_str(),
               std::generic_category().message(errno).c_str());
  return stderr;
}

spdlog::sink_ptr openSink(const std::string& target) {
  using Stream = spdlog::sinks::stdout_sink_base<spdlog::details::console_mutex>;  // any stream, in spite of its name
  if (target == "syslog") return std::make_shared<spdlog::sinks::syslog_sink_mt>("", LOG_PID, LOG_DAEMON, false);
  return std::make_shared<Stream>(openStream(target));
}

std::string setting(const char* variable, const char* otherwise) {
  const char* value = std::getenv(variable);
  return value != nullptr && *value != '\0' ? value : otherwise;
}

level_enum leastSeverity() {
  const std::string wanted = setting("TEMBRA_LOG_LEVEL", "warning");
  const auto* row = std::find_if(kSeverities.begin(), kSeverities.end(),
                                 [&wanted](const Severity& candidate) { return candidate.word == wanted; });
  if (row != kSeverities.end()) return row->severity;
  std::fprintf(stderr, "tembra log: TEMBRA_LOG_LEVEL must be detail, progress, warning or error, not \"%s\"\n",
               wanted.c_str());
  return level_enum::warn;
}

std::unique_ptr<spdlog::logger> openLog() {
  const std::string target = setting("TEMBRA_LOG", "stderr");
  auto log = std::make_unique<spdlog::logger>("tembra");
  log->set_level(target == "off" ? level_enum::off : leastSeverity());
  if (target == "off") return log;
  log->sinks().push_back(openSink(target));
  log->set_formatter(lineFormat());
  return log;
}

// Never destroyed: a detached thread may log until the very end of the process.
spdlog::logger& theLog() {
  static spdlog::logger* const log = openLog().release();
  return *log;
}

bool isControl(char character) {
  const auto code = static_cast<unsigned char>(character);
  return code < 0x20 || code == 0x7F;
}

// A text ends its own line at most: control characters at its ends go, those within become blanks.
std::string oneLine(std::string_view text) {
  while (!text.empty() && isControl(text.front())) text.remove_prefix(1);
  while (!text.empty() && isControl(text.back())) text.remove_suffix(1);
  std::string line(text);
  std::replace_if(line.begin(), line.end(), isControl, ' ');
  return line;
}

}  // namespace

Logger* Logger::getInstance() {
  static Logger logger;
  theLog();  // settings and the log file are dealt with now, not at the first line
  return &logger;
}

void Logger::Log(int level, const char* text) {
  spdlog::logger& log = theLog();
  const level_enum severity = severityOf(level);
  if (log.should_log(severity)) log.log(severity, oneLine(text != nullptr ? text : "(no text)"));
}
