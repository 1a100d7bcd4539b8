// The instructions of a job, the C library's on its behalf included, are the same in every run. Each limit leaves a
// tenth for another version of the compiler or of the C library.
#include <gtest/gtest.h>

#include "limits/callgrind.h"

namespace {

struct Limit {
  const char* job;
  double instructions;
};

// As built with -O2.
constexpr Limit kLimits[] = {
    {"ZigBee classification", 3'500},
    {"Z-Wave classification", 17'000},
    {"name to number", 58},
    {"number to name", 10},
    {"Z-Wave, nothing under way", 1'530},
    {"Z-Wave, a node joins", 2'570},
    {"ZigBee, still adding", 1'590},
    {"ZigBee, a device joins", 2'750},
    {"Hue, done", 3'240},
    {"Hue, a list of 25 bridges", 25'900},
    {"Nest, a status of no meaning", 1'990},
    {"Nest, linked", 2'190},
};

TEST(Instructions, AJobTakesNoMoreThanItsLimit) {
  std::map<std::string, double> taken = limits::instructionsOfJobs(TEMBRA_COUNTED, TEMBRA_FAST_LIBRARY);
  EXPECT_EQ(taken.size(), std::size(kLimits));
  for (const Limit& limit : kLimits) {
    const double instructions = taken[limit.job];
    EXPECT_GT(instructions, 0) << limit.job << " was not counted";
    EXPECT_LE(instructions, limit.instructions) << limit.job;
  }
}

}  // namespace
