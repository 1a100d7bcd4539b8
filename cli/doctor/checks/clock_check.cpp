// Whether the clock was set to another time while the router ran.
#include <sys/stat.h>
#include <tembra/globals.h>

#include <cmath>
#include <ctime>

#include "cli/doctor/checks/checks.h"
#include "cli/doctor/checks/history_checks.h"
#include "cli/doctor/facts/router.h"

namespace tembra::cli::doctor {
namespace {

constexpr std::time_t kTolerance = 5;
constexpr std::time_t kBeforeAnyRouter = 1'704'067'200;  // 2024, as a router without a battery begins in 1970

constexpr char kAdvice[] =
    "Set the clock before the HA server and the front ends start. Waits of the library are not affected.";

// The holder's time is of the clock when it opened the connection; its start is told by the clock as it is now.
Verdict verdictOnHolder(const tembra_holder& told) {
  const auto start = startOf(told.pid);
  const auto since = static_cast<std::time_t>(told.since);
  if (!start || since >= *start - kTolerance) return well("The clock was not set while it counted.");
  return finding("The clock was set forward while a front end had the connection.",
                 "process " + std::to_string(told.pid) + " started at " + momentText(*start) +
                     " and says that it opened its connection at " + momentText(since) + ".",
                 kAdvice);
}

}  // namespace

Verdict checkClock(Router& router) {
  const std::time_t now = std::time(nullptr);
  struct stat file = {};
  const bool hasDatabase = stat(DBName, &file) == 0;
  if (now < kBeforeAnyRouter) {
    return finding("The clock is not set.",
                   "it is " + momentText(now) + " now, " + std::to_string(now) + " s since 1970.", kAdvice);
  }
  if (hasDatabase && file.st_mtime > now + kTolerance) {
    return finding("The clock was set back.",
                   router.databaseName() + " was changed at " + momentText(file.st_mtime) + ", and it is " +
                       momentText(now) + " now.",
                   kAdvice);
  }
  if (auto step = clockStep(router)) return *step;
  const Holder& holder = router.holder();
  if (holder.error != 0 && !hasDatabase) {
    return note("The clock is set. Whether it was set back cannot be told without a device database or a front end.");
  }
  if (holder.error != 0) return well("The clock was not set back since the device database changed.");
  if (static_cast<std::time_t>(holder.told.since) > now + kTolerance) {
    return finding("The clock was set back while a front end had the connection.",
                   "process " + std::to_string(holder.told.pid) + " opened it at " +
                       momentText(static_cast<std::time_t>(holder.told.since)) + ", and it is " + momentText(now) +
                       " now.",
                   kAdvice);
  }
  return verdictOnHolder(holder.told);
}

}  // namespace tembra::cli::doctor
