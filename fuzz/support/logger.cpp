// The router's log of a fuzzing process: it looks at what it is given.
#include <tembra/platform.h>

#include <cstring>

#include "support/invariant.h"
#include "support/stage.h"

namespace {

constexpr int kLastLevel = 3;
constexpr std::size_t kLongestLine = 511;

}  // namespace

Logger* Logger::getInstance() {
  static Logger logger;
  return &logger;
}

void Logger::Log(int level, const char* text) {
  fuzz::require(level >= 0 && level <= kLastLevel, "levels of log lines are known");
  fuzz::require(std::strlen(text) <= kLongestLine, "log lines have at most 511 characters");
  if (fuzz::Stage* stage = fuzz::Stage::current(); stage != nullptr) stage->router().logged();
}
