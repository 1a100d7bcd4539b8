// Timed comparisons by Google Benchmark: everything that a group holds takes turns, the median counts.
#ifndef TEMBRA_BENCH_TIMING_H
#define TEMBRA_BENCH_TIMING_H

#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace bench {

/// How thorough a run is.
struct Effort {
  int repetitions;
  double secondsEach;          ///< of what is repeated until it has lasted so long
  int batches;                 ///< of what measures itself
  std::vector<int> homeSizes;  ///< devices in the database
};

inline const Effort kThorough{9, 0.05, 60, {10, 100, 1'000, 10'000, 100'000}};
inline const Effort kShort{2, 0.001, 2, {10, 100}};

/// Of two in the middle the lower one: what disturbs a measurement only adds to it.
double medianOf(std::vector<double> values);

class Comparison {
 public:
  explicit Comparison(Effort effort) : effort_(std::move(effort)) {}

  /// Something that is repeated as often as it takes to be measured.
  void repeat(const std::string& name, std::function<void()> action);

  /// Something that measures itself and returns the seconds; `batches` times in a repetition.
  void measured(const std::string& name, int batches, std::function<double()> seconds);

  /// Runs all of it. @return the median of each in seconds
  std::map<std::string, double> run();

 private:
  Effort effort_;
};

}  // namespace bench

#endif
