// tembra-assoc status and watch: who has the connection, what happens there, and what has happened.
#include <tembra/watch.h>

#include <CLI/CLI.hpp>
#include <cerrno>
#include <cstring>
#include <ctime>
#include <nlohmann/json.hpp>

#include "cli/commands/commands.h"
#include "cli/commands/history_text.h"
#include "cli/commands/other_front_end.h"
#include "cli/commands/watched_line.h"
#include "cli/display/event_text.h"
#include "cli/display/json_line.h"
#include "cli/display/terminal.h"
#include "cli/failure.h"
#include "platform/printable.h"

namespace tembra::cli {
namespace {

using Json = nlohmann::json;

constexpr std::chrono::milliseconds kBetweenTries{300};
constexpr std::chrono::milliseconds kLongestWait{1000};
constexpr int kHolderMilliseconds = 1000;

std::string timeText() { return clockText(std::time(nullptr)) + "  "; }

std::string errorIn(const std::string& line) {
  const Json said = Json::parse(line, nullptr, false);
  return said.is_object() ? textOf(said, "error") : "";
}

void show(const Context& context, const std::string& line) {
  if (context.options.json) return printLine(line);
  printText(timeText() + printable(watchedText(line)));
}

void tellNobody(const Context& context) {
  if (context.options.json) return printLine(statusEvent(nullptr));
  printText(timeText() + "The connection is free.");
}

// Who is refused once is refused again.
void throwIfRefused(const Context& context, const std::string& line) {
  const std::string error = errorIn(line);
  if (!error.empty()) throw Failure(kFailed, context.options.watchPath + " refuses to be watched: " + error + ".");
}

// Until the other front end closes its connection, or ends.
void showLines(const Context& context, tembra_watch* watch) {
  while (true) {
    context.attention.wait(tembra_watch_descriptor(watch), Attention::Input::kIgnored, kLongestWait);
    while (const char* line = tembra_watch_next(watch, 0)) {
      throwIfRefused(context, line);
      show(context, line);
    }
    if (errno == ECONNRESET) return tellNobody(context);
    if (errno != ETIMEDOUT) throw Failure(kFailed, "watching ended: " + std::string(std::strerror(errno)) + ".");
  }
}

void watchFrontEnds(const Context& context) {
  const std::string& path = context.options.watchPath;
  context.display.note("Watching " + path + " until Ctrl-C.");
  try {
    while (true) {
      if (const Watch watch{tembra_watch_open(path.c_str())}) {
        showLines(context, watch.get());
      } else if (!isNobodyThere(errno)) {
        throw Failure(kFailed, path + " cannot be watched: " + std::strerror(errno) + ".");
      }
      context.attention.pause(kBetweenTries);
    }
  } catch (const Interrupted&) {
    return;  // its proper end
  }
}

std::string awaitedBy(const tembra_holder& holder) {
  return awaitedText(numberOf<Operation>(tembra_operation_name, holder.operation),
                     numberOf<Phase>(tembra_phase_name, holder.phase));
}

void tellStatus(const Context& context) {
  auto holder = tembra_holder{};
  holder.size = sizeof holder;
  const int error = tembra_read_holder(context.options.watchPath.c_str(), kHolderMilliseconds, &holder);
  const bool isHeld = error == 0;
  if (!isHeld && !isNobodyThere(error)) {
    throw Failure(kFailed,
                  context.options.watchPath + " does not say who has the connection: " + std::strerror(error) + ".");
  }
  if (context.options.json) return printLine(statusEvent(isHeld ? &holder : nullptr));
  if (!isHeld) return printText("No front end that can be watched has the connection.");
  const std::string awaited = awaitedBy(holder);
  printText(printable(std::string(holder.program)) + " (process " + std::to_string(holder.pid) +
            ") has the connection since " + clockText(holder.since) + ": " + printable(std::string(holder.operation)) +
            "." + (awaited.empty() ? "" : " " + awaited + "."));
}

// ---- The flight recorder ----

void showEntry(const Context& context, const std::string& line) {
  context.options.json ? printLine(line) : printText(printable(timedEntryText(line)));
}

// Where nobody has the connection, that of the last failure.
void tellHistory(const Context& context) {
  const std::string& path = context.options.watchPath;
  if (const auto entries = readHistory(path)) {
    for (const std::string& line : *entries) showEntry(context, line);
    return;
  }
  const auto kept = readFailure(path);
  if (!kept) return context.display.note("Nobody has the connection, and no failure was kept beside " + path + ".");
  context.display.note("Nobody has the connection. This is what led to the last failure:");
  for (const std::string& line : *kept) showEntry(context, line);
}

}  // namespace

void declareWatch(CLI::App& program, Action& action) {
  CLI::App* watch = program.add_subcommand("watch", "show what other front ends do until Ctrl-C");
  watch->callback([&action] { action = watchFrontEnds; });
  CLI::App* status = program.add_subcommand("status", "tell which front end has the connection, and what it does");
  auto history = std::make_shared<bool>(false);
  status->add_flag("--history", *history,
                   "what that front end did last, or what led to the last failure where none has the connection");
  status->callback([&action, history] { action = *history ? tellHistory : tellStatus; });
}

}  // namespace tembra::cli
