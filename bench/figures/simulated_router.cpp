#include "figures/simulated_router.h"

#include <sched.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <exception>
#include <stdexcept>

#include "rig/clock.h"
#include "sim/control/control_client.h"

namespace bench {
namespace {

constexpr const char* kControl = "/tmp/tembra-bench.sock";
constexpr double kPatience = 10;

bool answers() {
  try {
    return tembra::sim::ask(kControl, "status").done;
  } catch (const std::exception&) {
    return false;
  }
}

template <typename Condition>
void await(Condition condition, const char* complaint) {
  const Clock::time_point from = Clock::now();
  while (!condition()) {
    if (secondsSince(from) > kPatience) throw std::runtime_error(complaint);
    sched_yield();
  }
}

}  // namespace

SimulatedRouter::SimulatedRouter() {
  std::remove("/tmp/ddb");
  const char* arguments[] = {TEMBRA_SIM, "run", "--latency", "0", "--control", kControl, nullptr};
  posix_spawn_file_actions_t quiet;
  posix_spawn_file_actions_init(&quiet);
  posix_spawn_file_actions_addopen(&quiet, STDOUT_FILENO, "/dev/null", 0, 0);
  auto* const* words = const_cast<char* const*>(arguments);  // NOLINT: the interface's type
  const int error = posix_spawn(&process_, TEMBRA_SIM, &quiet, nullptr, words, environ);
  posix_spawn_file_actions_destroy(&quiet);
  if (error != 0) throw std::runtime_error("the simulated router cannot be started");
  await(answers, "the simulated router does not get ready");
}

SimulatedRouter::~SimulatedRouter() {
  try {
    tembra::sim::ask(kControl, "stop");
  } catch (const std::exception& failure) {
    std::fprintf(stderr, "%s\n", failure.what());
  }
  waitpid(process_, nullptr, 0);
}

void SimulatedRouter::press(const std::string& device) {
  const auto pressed = [&device] { return tembra::sim::ask(kControl, "press " + device).done; };
  await(pressed, "the simulated router never adds");
}

}  // namespace bench
