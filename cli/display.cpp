#include "display.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <iostream>
#include <nlohmann/json.hpp>

#include "attention.h"
#include "event_report.h"
#include "platform/printable.h"
#include "words/event_names.h"
#include "words/timeline.h"

namespace tembra::cli {
namespace {

constexpr char kProgram[] = "tembra-assoc";
constexpr char kLibrary[] = "library";
constexpr char kUser[] = "user";

std::string timeLeft(const std::string& what, int seconds) {
  if (seconds < 0) return what + ", overdue";
  return what + " (at most " + std::to_string(seconds) + " s left)";
}

// 0: not known. A user may change it at any time.
std::size_t columnsOfTerminal() {
  winsize size{};
  return ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 ? size.ws_col : 0;
}

// A line that wraps cannot be cleared as one, and a new one would come below it each second.
std::string timeLeftIn(std::size_t columns, const std::string& what, int seconds) {
  std::string line = timeLeft(what, seconds);
  if (columns == 0 || line.size() < columns) return line;
  const std::string end = seconds < 0 ? "... overdue" : "... " + std::to_string(seconds) + " s";
  return (what.substr(0, columns - std::min(columns, end.size() + 1)) + end).substr(0, columns - 1);
}

/// For a file or a pipe: lines, and no countdown.
class PlainDisplay : public Display {
 public:
  void note(const std::string& sentence) override { printLine(printable(sentence)); }
  void event(const HeardEvent& heard) override { printLine(describeEvent(heard)); }
};

/// For a terminal: the last line is alive.
class LiveDisplay : public Display {
 public:
  ~LiveDisplay() override { LiveDisplay::makeRoom(); }
  void note(const std::string& sentence) override { printAbove(printable(sentence)); }
  void event(const HeardEvent& heard) override { printAbove(describeEvent(heard)); }
  void waiting(const std::string& what, int secondsLeft) override {
    const std::string line = timeLeftIn(columnsOfTerminal(), what, secondsLeft);
    if (line == alive_) return;
    makeRoom();
    alive_ = line;
    std::cout << alive_ << std::flush;
  }
  void makeRoom() override {
    constexpr char kClearLine[] = "\r\033[K";
    if (!alive_.empty()) std::cout << kClearLine << std::flush;
    alive_.clear();
  }

 private:
  void printAbove(const std::string& line) {
    makeRoom();
    printLine(line);
  }

  std::string alive_;
};

/// For programs: one object an event and nothing else.
class JsonDisplay : public Display {
 public:
  void event(const HeardEvent& heard) override { printLine(jsonLine(eventJson(heard))); }
};

/// For a demonstration: who said what to whom, and every second that passes.
class TimelineDisplay : public Display {
 public:
  void note(const std::string& sentence) override { words::say(kProgram, kUser, sentence); }
  void command(const std::string& call) override { words::say(kProgram, kLibrary, call); }
  void event(const HeardEvent& heard) override {
    words::say(kLibrary, kProgram, "event " + std::to_string(heard.event.code) + " " + describeEvent(heard));
  }
  void waiting(const std::string& what, int secondsLeft) override {
    const std::string line = timeLeft(what, secondsLeft);
    if (line != lastWait_) words::say(kProgram, kUser, line);
    lastWait_ = line;
  }

 private:
  std::string lastWait_;
};

}  // namespace

void printLine(const std::string& line) {
  std::cout << line << std::endl;
  if (!std::cout) throw Interrupted{};
}

std::unique_ptr<Display> makeDisplay(const Options& options) {
  if (options.json) return std::make_unique<JsonDisplay>();
  if (options.timeline) return std::make_unique<TimelineDisplay>();
  if (isatty(STDOUT_FILENO) == 1) return std::make_unique<LiveDisplay>();
  return std::make_unique<PlainDisplay>();
}

}  // namespace tembra::cli
