// tembra-bench: measures the library and prints a table; ./run-bench builds and runs it.
#include <CLI/CLI.hpp>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <vector>

#include "figures.h"

namespace {

// In the order of the table's numbers as far as the measurements allow it.
void measureAll(const bench::Effort& effort, bench::Report& report) {
  bench::measureSystemCalls(report);
  bench::measureAllocations(report);
  bench::measureSizes(report);
  bench::measureFrontEnds(effort, report);
  bench::measureReceiving(effort, report);
  bench::measureClassification(effort, report);
  bench::measureNames(effort, report);
  bench::measureConnection(effort, report);
  bench::measureWholeAdd(effort, report);
  bench::measureKit(effort, report);
  bench::measureLookUps(effort, report);
}

}  // namespace

int main(int argc, char** argv) try {
  CLI::App app{"Measures the association library."};
  bool isShort = false;
  std::filesystem::path output;
  app.add_flag("--short", isShort, "only see that it works; the figures mean little");
  int largestHome = INT_MAX;
  app.add_option("--largest-home", largestHome, "no databases of more devices")->check(CLI::Range(100, INT_MAX));
  app.add_option("--output", output, "folder for latest.json and the curves' data")->required();
  CLI11_PARSE(app, argc, argv);

  setenv("TEMBRA_LOG_LEVEL", "warning", 1);
  bench::Report report;
  bench::Effort effort = isShort ? bench::kShort : bench::kThorough;
  std::erase_if(effort.homeSizes, [largestHome](int devices) { return devices > largestHome; });
  measureAll(effort, report);
  report.sort();
  report.print();
  report.write(output, isShort);
  return 0;
} catch (const std::exception& failure) {
  std::fprintf(stderr, "tembra-bench: %s\n", failure.what());
  return 1;
}
