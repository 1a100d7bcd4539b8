// What the flight recorder tells.
#include <tembra/watch.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstdlib>
#include <nlohmann/json.hpp>

#include "cli/doctor/checks/checks.h"
#include "cli/doctor/checks/history_checks.h"
#include "cli/doctor/facts/router.h"
#include "platform/printable.h"

namespace tembra::cli::doctor {
namespace {

constexpr long long kMicroseconds = 1'000'000;

std::string wordOf(const nlohmann::json& object, const char* member) {
  const auto found = object.find(member);
  return found != object.end() && found->is_string() ? printable(found->get<std::string>()) : "";
}

long long numberOf(const nlohmann::json& entry, const char* member) {
  const auto found = entry.find(member);
  return found != entry.end() && found->is_number_integer() ? found->get<long long>() : 0;
}

bool isFailure(const nlohmann::json& entry) {
  const auto event = entry.find("event");
  if (event == entry.end() || !event->is_object() || wordOf(*event, "event") != "ended") return false;
  const std::string outcome = wordOf(*event, "outcome");
  return outcome == "failed" || outcome == "timed-out";
}

std::string whenOf(const nlohmann::json& entry) {
  return momentText(static_cast<std::time_t>(numberOf(entry, "wall_us") / kMicroseconds));
}

}  // namespace

Verdict checkLastFailure(Router& router) {
  const std::vector<nlohmann::json>& entries = router.history();
  const auto last = std::find_if(entries.rbegin(), entries.rend(), isFailure);
  const std::string kept = router.context().options.watchPath + TEMBRA_FAILURE_SUFFIX;
  if (entries.empty() && access(kept.c_str(), R_OK) != 0 && errno == EACCES) {
    return note("This user may not read the flight recorder of the last failure.", kept + ".");
  }
  if (last == entries.rend()) {
    return well(entries.empty() ? "There is no flight recorder to ask." : "The flight recorder knows of no failure.");
  }
  const nlohmann::json& event = last->at("event");
  return note("The last " + wordOf(event, "operation") + " that failed ended at " + whenOf(*last) + ": " +
                  wordOf(event, "text"),
              "entry " + std::to_string(numberOf(*last, "entry")) + " of the flight recorder, reason " +
                  wordOf(event, "reason") + ", phase " + wordOf(event, "phase") + ".");
}

// Both clocks of an entry were read together: what lies between them stays the same, unless one was set.
std::optional<Verdict> clockStep(Router& router) {
  const std::vector<nlohmann::json>& entries = router.history();
  constexpr long long kTolerated = 5 * kMicroseconds;
  const auto between = [](const nlohmann::json& entry) {
    constexpr long long kMost = 1LL << 60;  // no sum of theirs overflows
    return std::clamp(numberOf(entry, "wall_us"), 0LL, kMost) - std::clamp(numberOf(entry, "monotonic_us"), 0LL, kMost);
  };
  for (std::size_t i = 1; i < entries.size(); ++i) {
    const long long step = between(entries[i]) - between(entries[i - 1]);
    if (std::llabs(step) <= kTolerated) continue;
    return finding("The clock was set while a front end ran.",
                   "between " + whenOf(entries[i - 1]) + " and " + whenOf(entries[i]) +
                       " of the flight recorder it leapt by " + std::to_string(step / kMicroseconds) + " s.",
                   "Set the clock before the front ends start. Waits of the library are not affected.");
  }
  return std::nullopt;
}

}  // namespace tembra::cli::doctor
