#include "timeline.h"

#include <unistd.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <string>

#include "fitting.h"
#include "platform/printable.h"

namespace tembra::words {
namespace {

// The clock of /proc/uptime.
double uptime() {
  timespec now{};
  clock_gettime(CLOCK_BOOTTIME, &now);
  return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

const double kProgramStart = uptime();

double timelineStart() {
  const char* text = std::getenv("TEMBRA_TIMELINE_START");
  if (text == nullptr) return kProgramStart;
  char* end = nullptr;
  const double seconds = std::strtod(text, &end);
  return end == text || *end != '\0' ? kProgramStart : seconds;
}

}  // namespace

void say(std::string_view from, std::string_view to, std::string_view what) {
  static const double start = timelineStart();
  std::array<char, 32> seconds{};
  std::snprintf(seconds.data(), seconds.size(), "%8.3fs  ", uptime() - start);
  std::string line = seconds.data();
  line.append(from).append(" -> ").append(to).append("   ").append(what);
  line = fitted(printable(line), STDOUT_FILENO) + "\n";
  std::fwrite(line.data(), 1, line.size(), stdout);
  std::fflush(stdout);
}

}  // namespace tembra::words
