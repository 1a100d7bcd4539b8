// The clock of all measurements.
#ifndef TEMBRA_BENCH_RIG_CLOCK_H
#define TEMBRA_BENCH_RIG_CLOCK_H

#include <chrono>

namespace bench {

using Clock = std::chrono::steady_clock;

inline double secondsBetween(Clock::time_point from, Clock::time_point to) {
  return std::chrono::duration<double>(to - from).count();
}

inline double secondsSince(Clock::time_point from) { return secondsBetween(from, Clock::now()); }

}  // namespace bench

#endif
