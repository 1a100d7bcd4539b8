#include "cli/doctor/flight_recorder.h"

#include <tembra/watch.h>

#include <algorithm>
#include <chrono>
#include <nlohmann/json.hpp>

#include "cli/commands/other_front_end.h"

namespace tembra::cli::doctor {

std::vector<nlohmann::json> readFlightRecorder(const std::string& watchPath) {
  using std::chrono::steady_clock;
  constexpr std::size_t kMost = 10'000;  // of which a recorder of 64 KiB has room for some hundred
  std::vector<nlohmann::json> entries;
  const Watch watch(tembra_watch_open(watchPath.c_str()));
  const auto until = steady_clock::now() + std::chrono::seconds(1);
  const auto nextLine = [&]() -> const char* {
    const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(until - steady_clock::now()).count();
    return tembra_watch_next(watch.get(), static_cast<int>(std::max<long long>(left, 0)));
  };
  if (!watch || nextLine() == nullptr || tembra_watch_history(watch.get()) != 0) return entries;
  while (const char* const line = nextLine()) {
    nlohmann::json entry = nlohmann::json::parse(line, nullptr, false);
    if (!entry.is_object() || entry.contains("history") || entries.size() == kMost) break;
    if (entry.contains("entry")) entries.push_back(std::move(entry));
  }
  return entries;
}

}  // namespace tembra::cli::doctor
