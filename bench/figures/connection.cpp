// Opening the connection until the thread waits, and closing it until the thread has ended.
#include <sched.h>
#include <sys/syscall.h>
#include <tembra/association.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <iterator>
#include <stdexcept>

#include "figures.h"
#include "rig/outside.h"

namespace bench {
namespace {

std::size_t runningThreads() {
  const std::filesystem::directory_iterator tasks("/proc/self/task");
  return static_cast<std::size_t>(std::distance(begin(tasks), end(tasks)));
}

// The shell that the opening has to run for the router's settings command.
double shell() {
  const Clock::time_point from = Clock::now();
  FILE* answer = popen("nvram_get 2860 MeshSlaveID", "r");
  char text[10] = {};
  if (answer == nullptr) throw std::runtime_error("the shell does not start");
  if (fgets(text, sizeof text, answer) == nullptr) text[0] = '\0';
  pclose(answer);
  return secondsSince(from);
}

double openUntilItWaits(TembraAssociation& assoc) {
  first_wait::forget();
  const Clock::time_point from = Clock::now();
  if (assoc.checkAssocConnection() != 0) throw std::runtime_error("the connection cannot be opened");
  while (!first_wait::happened()) sched_yield();
  return secondsBetween(from, first_wait::when());
}

double closeUntilItEnds(TembraAssociation& assoc) {
  const std::size_t others = runningThreads() - 1;
  const Clock::time_point from = Clock::now();
  assoc.closeAssocConnection();
  while (runningThreads() > others) sched_yield();
  return secondsSince(from);
}

double opened(TembraAssociation& assoc) {
  const double seconds = openUntilItWaits(assoc);
  closeUntilItEnds(assoc);
  return seconds;
}

double closed(TembraAssociation& assoc) {
  openUntilItWaits(assoc);
  return closeUntilItEnds(assoc);
}

}  // namespace

void measureConnection(const Effort& effort, Report& report) {
  TembraAssociation& assoc = *TembraAssociation::LCDAssocInit();
  Comparison comparison(effort);
  comparison.measured("open", effort.batches, [&] { return opened(assoc); });
  comparison.measured("shell", effort.batches, shell);
  comparison.measured("close", effort.batches, [&] { return closed(assoc); });
  const std::map<std::string, double> seconds = comparison.run();
  report.add({.number = 12,
              .what = "opening, until the thread waits; the shell it runs",
              .unit = Unit::kMicroseconds,
              .value = seconds.at("open") * 1e6,
              .limit = seconds.at("shell") * 1e6,
              .mostRatio = 1.1});
  report.add({.number = 12,
              .what = "closing, until the thread has ended",
              .unit = Unit::kMicroseconds,
              .value = seconds.at("close") * 1e6,
              .limit = {},
              .most = 1000});
}

}  // namespace bench
