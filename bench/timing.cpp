#include "timing.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <array>
#include <utility>

namespace bench {
namespace {

class Collector : public benchmark::BenchmarkReporter {
 public:
  bool ReportContext(const Context& /*context*/) override { return true; }
  void ReportRuns(const std::vector<Run>& runs) override {
    for (const Run& run : runs) {
      if (run.run_type != Run::RT_Iteration) continue;
      seconds_[run.run_name.function_name].push_back(run.real_accumulated_time / static_cast<double>(run.iterations));
    }
  }
  [[nodiscard]] std::map<std::string, double> medians() const {
    std::map<std::string, double> medians;
    for (const auto& [name, seconds] : seconds_) medians[name] = medianOf(seconds);
    return medians;
  }

 private:
  std::map<std::string, std::vector<double>> seconds_;
};

// Takes turns between repetitions rather than finishing one benchmark before the next.
void configure(const Effort& effort) {
  std::array<std::string, 4> texts{"tembra-bench", "--benchmark_enable_random_interleaving=true",
                                   "--benchmark_repetitions=" + std::to_string(effort.repetitions),
                                   "--benchmark_min_time=" + std::to_string(effort.secondsEach)};
  std::array<char*, texts.size()> arguments{};
  std::transform(texts.begin(), texts.end(), arguments.begin(), [](std::string& text) { return text.data(); });
  int count = arguments.size();
  benchmark::Initialize(&count, arguments.data());
}

}  // namespace

double medianOf(std::vector<double> values) {
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>((values.size() - 1) / 2);
  std::nth_element(values.begin(), middle, values.end());
  return *middle;
}

void Comparison::repeat(const std::string& name, std::function<void()> action) {
  benchmark::RegisterBenchmark(name.c_str(), [action = std::move(action)](benchmark::State& state) {
    for (auto _ : state) action();
  });
}

void Comparison::measured(const std::string& name, int batches, std::function<double()> seconds) {
  benchmark::RegisterBenchmark(name.c_str(),
                               [seconds = std::move(seconds)](benchmark::State& state) {
                                 for (auto _ : state) state.SetIterationTime(seconds());
                               })
      ->UseManualTime()
      ->Iterations(batches);
}

std::map<std::string, double> Comparison::run() {
  configure(effort_);
  Collector collector;
  benchmark::RunSpecifiedBenchmarks(&collector);
  benchmark::ClearRegisteredBenchmarks();
  return collector.medians();
}

}  // namespace bench
