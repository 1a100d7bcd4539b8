// The figures of a run: a table for people, JSON for programs.
#ifndef TEMBRA_BENCH_REPORT_H
#define TEMBRA_BENCH_REPORT_H

#include <filesystem>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace bench {

enum class Unit { kNanoseconds, kMicroseconds, kMilliseconds, kPerSecond, kKiB, kCount };

/// One line of the table. A goal is either for the value or for its ratio to the limit of the same run.
struct Figure {
  int number;
  std::string what;
  Unit unit;
  double value;                          ///< in units
  std::optional<double> limit;           ///< measured in the same run, in units
  std::optional<double> mostRatio = {};  ///< goals, as far as they are set
  std::optional<double> leastRatio = {};
  std::optional<double> most = {};
  std::optional<double> least = {};

  [[nodiscard]] bool hasRatio() const { return limit && *limit > 0; }
  [[nodiscard]] double ratio() const { return value / *limit; }
  [[nodiscard]] bool hasGoal() const { return mostRatio || leastRatio || most || least; }
  [[nodiscard]] bool isMet() const;
};

/// One measurement of the curves: a look-up in homes of different sizes.
struct CurvePoint {
  std::string lookUp;
  int devices;
  double library;  ///< seconds
  double bare;
};

class Report {
 public:
  void add(Figure figure) { figures_.push_back(std::move(figure)); }
  void add(CurvePoint point) { curve_.push_back(std::move(point)); }

  [[nodiscard]] std::vector<CurvePoint> curveOf(const std::string& lookUp) const;

  /// Puts the figures into the order of their numbers.
  void sort();

  void print() const;

  /// Writes latest.json, and for each look-up NAME.dat with the columns devices, library and bare.
  void write(const std::filesystem::path& folder, bool isShort) const;

 private:
  std::vector<Figure> figures_;
  std::vector<CurvePoint> curve_;
};

}  // namespace bench

#endif
