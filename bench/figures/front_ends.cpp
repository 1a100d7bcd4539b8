// What linking and opening the library costs a front end: its start, its memory.
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <stdexcept>
#include <string>

#include "figures.h"
#include "rig/clock.h"

namespace bench {
namespace {

// From the start of a process to its end.
double lifeOf(const char* program) {
  char* arguments[] = {const_cast<char*>(program), nullptr};  // NOLINT: the interface's type
  pid_t child = 0;
  int status = 0;
  const Clock::time_point from = Clock::now();
  if (posix_spawn(&child, program, nullptr, nullptr, arguments, environ) != 0) throw std::runtime_error(program);
  waitpid(child, &status, 0);
  const double seconds = secondsSince(from);
  if (status != 0) throw std::runtime_error(std::string(program) + " has failed");
  return seconds;
}

double privateKiBOf(const std::string& program) {
  const std::unique_ptr<FILE, decltype(&pclose)> answer(popen((program + " open").c_str(), "r"), &pclose);
  char line[64] = {};
  if (answer == nullptr || fgets(line, sizeof line, answer.get()) == nullptr) throw std::runtime_error(program);
  return std::atof(line);
}

// It depends on where the system puts things.
double medianKiBOf(const std::string& program) {
  std::array<double, 9> sizes{};
  std::generate(sizes.begin(), sizes.end(), [&program] { return privateKiBOf(program); });
  std::sort(sizes.begin(), sizes.end());
  return sizes[sizes.size() / 2];
}

}  // namespace

void measureFrontEnds(const Effort& effort, Report& report) {
  const double memory = medianKiBOf(TEMBRA_FRONT_END_WITH) - medianKiBOf(TEMBRA_FRONT_END_WITHOUT);
  report.add({.number = 11,
              .what = "private memory gained by linking and opening",
              .unit = Unit::kKiB,
              .value = memory,
              .limit = {},
              .most = 200});
  report.add({.number = 14,
              .what = "private memory gained by the kit, its recorder full",
              .unit = Unit::kKiB,
              .value = medianKiBOf(TEMBRA_FRONT_END_KIT) - medianKiBOf(TEMBRA_FRONT_END_WITH),
              .limit = {},
              .most = 64 + 64});
  Comparison comparison(effort);
  comparison.measured("with", effort.batches, [] { return lifeOf(TEMBRA_FRONT_END_WITH); });
  comparison.measured("without", effort.batches, [] { return lifeOf(TEMBRA_FRONT_END_WITHOUT); });
  const std::map<std::string, double> seconds = comparison.run();
  const double gained = seconds.at("with") - seconds.at("without");
  report.add({.number = 13,
              .what = "start of a process, with the library and without",
              .unit = Unit::kMilliseconds,
              .value = seconds.at("with") * 1e3,
              .limit = seconds.at("without") * 1e3});
  report.add({.number = 13,
              .what = "what the library adds to it",
              .unit = Unit::kMilliseconds,
              .value = gained * 1e3,
              .limit = {},
              .most = 1});
}

}  // namespace bench
