// A writer that is killed in the middle of its work costs no record that was there before it started.
#include <depot.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <tembra/globals.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <random>
#include <string>
#include <thread>

#include "house.h"

using kit::Bytes;
using kit::Router;

namespace {

constexpr int kNewDevices = 200;

int rounds() {
  const char* text = std::getenv("TEMBRA_ROUNDS");
  return text == nullptr ? 15 : std::atoi(text);
}

// Adds and rewrites records of its own until it is killed.
[[noreturn]] void write(int ready) {
  const std::string value(300, 'x');
  const char go = 'g';
  if (::write(ready, &go, 1) != 1) _exit(1);
  for (int i = 0;; ++i) {
    DEPOT* depot = dpopen(DBName, DP_OWRITER | DP_OCREAT, -1);
    if (depot == nullptr) continue;
    const std::string key = "new" + std::to_string(i % kNewDevices);
    dpput(depot, key.c_str(), -1, value.data(), static_cast<int>(value.size()) - i % 7, DP_DOVER);
    if (i % 3 == 0) dpout(depot, key.c_str(), -1);
    dpclose(depot);
  }
}

void killAWriter(std::chrono::microseconds after) {
  std::array<int, 2> ready{};
  ASSERT_EQ(pipe2(ready.data(), O_CLOEXEC), 0);
  const pid_t writer = fork();
  if (writer == 0) write(ready[1]);
  char go = 0;
  ASSERT_EQ(::read(ready[0], &go, 1), 1);
  std::this_thread::sleep_for(after);
  kill(writer, SIGKILL);
  waitpid(writer, nullptr, 0);
  close(ready[0]);
  close(ready[1]);
}

}  // namespace

TEST(KilledWriter, CostsNoRecordThatWasThere) {
  Router router;
  house::fill(router.database());
  router.assoc();
  std::minstd_rand dice;
  std::uniform_int_distribution<int> microseconds(0, 3000);
  for (int round = 0; round < rounds(); ++round) {
    killAWriter(std::chrono::microseconds(microseconds(dice)));
    ASSERT_EQ(house::countFound(router), house::kDevices) << "round " << round;
    ASSERT_EQ(router.assoc().calculateDevId(), 77);
  }
}
