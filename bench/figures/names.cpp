// Names of command classes, in both directions.
#include <arpa/inet.h>
#include <benchmark/benchmark.h>
#include <tembra/names.h>

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

#include "figures.h"

namespace bench {
namespace {

constexpr int kCallsEach = 1000;
constexpr double kNano = 1e9;

std::vector<std::string> allNames() {
  std::vector<std::string> names{"UNKNOWN", "X", "DOOR LOCKS", "a name that is longer than any of the command classes"};
  for (int number = 0; number <= 255; ++number) {
    const std::string name = cclassStr(static_cast<unsigned char>(number));
    if (std::find(names.begin(), names.end(), name) == names.end()) names.push_back(name);
  }
  return names;
}

// The calls depend on nothing that the compiler could foresee: the tables are in another shared object.
void lookUp(const std::string& name) {
  unsigned sum = 0;
  for (int i = 0; i < kCallsEach; ++i) sum += cclassNum(name.c_str());
  benchmark::DoNotOptimize(sum);
}

void nameAll() {
  std::uintptr_t sum = 0;
  for (int i = 0; i < kCallsEach; ++i)
    sum += reinterpret_cast<std::uintptr_t>(cclassStr(static_cast<unsigned char>(i)));
  benchmark::DoNotOptimize(sum);
}

// The least that a call into another shared object costs: a function of the C library that turns two bytes round.
void callNothing() {
  static unsigned short (*volatile function)(unsigned short) = &::htons;
  unsigned sum = 0;
  for (int i = 0; i < kCallsEach; ++i) sum += function(static_cast<unsigned short>(i));
  benchmark::DoNotOptimize(sum);
}

}  // namespace

void measureNames(const Effort& effort, Report& report) {
  Effort each = effort;
  each.secondsEach = effort.secondsEach / 20;
  Comparison comparison(each);
  const std::vector<std::string> names = allNames();
  for (const std::string& name : names) comparison.repeat("name " + name, [name] { lookUp(name); });
  comparison.repeat("number", nameAll);
  comparison.repeat("nothing", callNothing);
  std::map<std::string, double> seconds = comparison.run();
  const double number = seconds.at("number") / kCallsEach * kNano;
  const double nothing = seconds.at("nothing") / kCallsEach * kNano;
  seconds.erase("number");
  seconds.erase("nothing");
  const auto bySeconds = [](const auto& left, const auto& right) { return left.second < right.second; };
  const auto [best, worst] = std::minmax_element(seconds.begin(), seconds.end(), bySeconds);
  const double nanosEach = kNano / kCallsEach;
  report.add({.number = 6,
              .what = "command class to number: dearest, cheapest of " + std::to_string(names.size()) + " names",
              .unit = Unit::kNanoseconds,
              .value = worst->second * nanosEach,
              .limit = best->second * nanosEach,
              .mostRatio = 2,
              .most = 12});
  report.add({.number = 6,
              .what = "number to name; the shortest call",
              .unit = Unit::kNanoseconds,
              .value = number,
              .limit = nothing,
              .most = 2});
}

}  // namespace bench
