// What can be counted: allocations, system calls, sizes.
#include <algorithm>
#include <numeric>

#include "figures.h"
#include "rig/elf_file.h"
#include "rig/own_allocations.h"
#include "rig/system_calls.h"

namespace bench {
namespace {

constexpr int kPasses = 5;
constexpr double kKiB = 1024;

// As many as the text has words.
double wordsIn(const std::string& text) { return 1 + static_cast<double>(std::count(text.begin(), text.end(), ' ')); }

void addSize(Report& report, const char* what, std::size_t bytes, std::optional<double> most = {}) {
  report.add({.number = 10,
              .what = what,
              .unit = Unit::kKiB,
              .value = static_cast<double>(bytes) / kKiB,
              .limit = {},
              .most = most});
}

}  // namespace

void measureSystemCalls(Report& report) {
  for (const Datagram& datagram : datagramsOfAllFlows()) {
    const std::vector<std::string> passes = systemCallsOfPasses(datagram, kPasses);
    const double calls = std::transform_reduce(passes.begin(), passes.end(), 0.0, std::plus<>(), wordsIn);
    report.add({.number = 9,
                .what = "system calls of a pass: " + datagram.name,
                .unit = Unit::kCount,
                .value = calls / kPasses,
                .limit = wordsIn(necessarySystemCalls(datagram)),
                .mostRatio = 1});
  }
}

void measureAllocations(Report& report) {
  std::size_t forDatagrams = 0;
  for (const Datagram& datagram : datagramsOfAllFlows()) forDatagrams += allocationsForDatagrams(datagram, kPasses);
  std::size_t forCalls = 0;
  for (const CallCount& count : allocationsOfPublicCalls()) forCalls += count.allocations;
  report.add({.number = 8,
              .what = "heap allocations, datagrams of every flow",
              .unit = Unit::kCount,
              .value = static_cast<double>(forDatagrams),
              .limit = {},
              .most = 0});
  report.add({.number = 8,
              .what = "heap allocations, every public call once",
              .unit = Unit::kCount,
              .value = static_cast<double>(forCalls),
              .limit = {},
              .most = 0});
}

void measureSizes(Report& report) {
  const ElfFile small(TEMBRA_SMALL_LIBRARY);
  const ElfFile fast(TEMBRA_FAST_LIBRARY);
  addSize(report, "code, constants and variables at -Os", small.codeAndData(), 72);
  addSize(report, "the same at -O2", fast.codeAndData());
  addSize(report, "all that is loaded, at -Os", small.loaded());
  addSize(report, "the same at -O2", fast.loaded());
  report.add({.number = 13,
              .what = "initialisers of our own",
              .unit = Unit::kCount,
              .value = static_cast<double>(ElfFile(TEMBRA_LIBRARY).initialisers()) - 1,
              .limit = {},
              .most = 0});
}

}  // namespace bench
