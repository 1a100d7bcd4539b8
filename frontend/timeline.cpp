#include "timeline.h"

#include <array>
#include <charconv>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <system_error>

namespace tembra::frontend {
namespace {

using Clock = std::chrono::steady_clock;  // CLOCK_MONOTONIC

const Clock::time_point programStart = Clock::now();

Clock::time_point timelineStart() {
  const char* text = std::getenv("TEMBRA_TIMELINE_START");
  if (text == nullptr) return programStart;
  std::int64_t nanoseconds = 0;
  const char* end = text + std::strlen(text);
  const auto [stop, error] = std::from_chars(text, end, nanoseconds);
  if (error != std::errc() || stop != end) return programStart;
  return Clock::time_point(std::chrono::nanoseconds(nanoseconds));
}

}  // namespace

void say(std::string_view from, std::string_view to, std::string_view what) {
  static const Clock::time_point start = timelineStart();
  const std::chrono::duration<double> elapsed = Clock::now() - start;
  std::array<char, 32> seconds{};
  std::snprintf(seconds.data(), seconds.size(), "%8.3fs  ", elapsed.count());
  std::string line = seconds.data();
  line.append(from).append(" -> ").append(to).append("   ").append(what).append("\n");
  std::fwrite(line.data(), 1, line.size(), stdout);
  std::fflush(stdout);
}

}  // namespace tembra::frontend
