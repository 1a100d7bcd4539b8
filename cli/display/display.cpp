#include "cli/display/display.h"

#include <tembra/watch.h>
#include <unistd.h>

#include <cstdio>
#include <nlohmann/json.hpp>

#include "cli/display/event_text.h"
#include "cli/display/json_line.h"
#include "cli/display/live_line.h"
#include "cli/display/terminal.h"
#include "platform/printable.h"
#include "words/timeline.h"

namespace tembra::cli {
namespace {

constexpr char kProgram[] = "tembra-assoc";
constexpr char kKit[] = "kit";
constexpr char kUser[] = "user";

/// For a file or a pipe: lines, and no countdown.
class PlainDisplay : public Display {
 public:
  using Display::Display;
  void note(const std::string& sentence) override { printText(printable(sentence)); }
  void event(const Event& event) override {
    if (const auto* warning = event.as<Warning>()) return warn(*warning);
    if (const std::string text = eventText(event); !text.empty()) printText(text);
  }
};

/// The same with everything that the kit tells.
class VerboseDisplay : public PlainDisplay {
 public:
  using PlainDisplay::PlainDisplay;
  void event(const Event& event) override {
    char time[32];
    std::snprintf(time, sizeof time, "%8.3f s  ", static_cast<double>(event.elapsed.count()) / 1000);
    printLine(time + event.json);
    PlainDisplay::event(event);
  }
};

/// For a terminal: the last line is alive.
class LiveDisplay : public Display {
 public:
  using Display::Display;
  ~LiveDisplay() override { line_.clear(); }
  void note(const std::string& sentence) override { printAbove(printable(sentence)); }
  void event(const Event& event) override {
    if (const auto* warning = event.as<Warning>()) return warn(*warning);
    if (event.as<Waiting>() != nullptr) return;  // the line that is alive says so
    if (const std::string text = eventText(event); !text.empty()) printAbove(text);
  }
  void waiting(const std::string& what, std::optional<int> seconds) override {
    if (!what.empty()) line_.showCountdown(what, seconds);
  }
  void prompt(const std::string& question, std::optional<int> seconds, const std::string& typed) override {
    line_.showPrompt(printable(question), seconds, printable(typed));
  }
  void endPrompt() override { line_.keep(); }
  void complain(const std::string& sentence) override {
    line_.clear();
    Display::complain(sentence);
  }

 private:
  void printAbove(const std::string& line) {
    line_.clear();
    printText(line);
  }

  LiveLine line_;
};

/// For programs: one object a line and nothing else.
class JsonDisplay : public Display {
 public:
  using Display::Display;
  void event(const Event& event) override { printLine(event.json); }
  void complain(const std::string& sentence) override { printLine(jsonEvent("remark", {{"text", sentence}})); }
  void failed(const Failure& failure) override {
    if (failure.told() == Failure::Told::kByEvent) return;
    const Failure::Reason& reason = failure.reason();
    nlohmann::ordered_json error = {{"status", static_cast<int>(failure.status())}};
    if (!reason.name.empty()) error["reason"] = reason.name;
    error["text"] = reason.text;
    if (!reason.advice.empty()) error["advice"] = reason.advice;
    printLine(jsonEvent("error", error));
  }
  void ask(const nlohmann::ordered_json& question) override { printLine(jsonEvent("question", question)); }
  void ended(int status) override { printLine(jsonEvent("exit", {{"status", status}})); }
};

/// For a demonstration: who said what to whom, and every second that passes.
class TimelineDisplay : public Display {
 public:
  using Display::Display;
  void note(const std::string& sentence) override { words::say(kProgram, kUser, sentence); }
  void command(const std::string& call) override { words::say(kProgram, kKit, call); }
  void event(const Event& event) override {
    words::say(kKit, kProgram, "event " + nlohmann::json::parse(event.json).at("event").get<std::string>());
    if (const auto* warning = event.as<Warning>()) return warn(*warning);
    if (const std::string text = eventText(event); !text.empty()) note(text);
  }
  void waiting(const std::string& what, std::optional<int> seconds) override {
    constexpr std::size_t kWide = 1000;
    const std::string line = countdownText(what, seconds, kWide);
    if (!what.empty() && line != lastWait_) note(line);
    lastWait_ = line;
  }

 private:
  std::string lastWait_;
};

}  // namespace

void Display::complain(const std::string& sentence) { cli::complain(sentence); }

// Most users may not serve watchers at the usual path, and most have none.
void Display::warn(const Warning& warning) {
  const bool isExpected = warning.reason == TEMBRA_REASON_NOT_WATCHED && options_.watchPath == TEMBRA_WATCH_PATH;
  if (!isExpected) complain(warning.text);
}

std::unique_ptr<Display> makeDisplay(const Options& options) {
  if (options.json) return std::make_unique<JsonDisplay>(options);
  if (options.timeline) return std::make_unique<TimelineDisplay>(options);
  if (options.verbose) return std::make_unique<VerboseDisplay>(options);
  if (isatty(STDOUT_FILENO) == 1) return std::make_unique<LiveDisplay>(options);
  return std::make_unique<PlainDisplay>(options);
}

}  // namespace tembra::cli
