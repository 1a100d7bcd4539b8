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
    {"ZigBee classification", 3'300},
    {"Z-Wave classification", 14'800},
    {"name to number", 94},  // of all numbers: two thirds are called "NO OPERATION"
    {"number to name", 8},
    {"Z-Wave, nothing under way", 580},
    {"Z-Wave, a node joins", 1'340},
    {"ZigBee, still adding", 500},
    {"ZigBee, a device joins", 1'380},
    {"Hue, done", 1'350},
    {"Hue, a list of 25 bridges", 23'300},
    {"Nest, a status of no meaning", 400},
    {"Nest, linked", 540},
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
