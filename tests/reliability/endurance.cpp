#include "endurance.h"

#include <malloc.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <mutex>
#include <string>
#include <thread>

#include "footprint.h"
#include "operations.h"

using std::chrono::steady_clock;

namespace {

constexpr int kShort = 150;
constexpr int kEarly = 100;
constexpr std::chrono::milliseconds kPrompt{100};
constexpr std::chrono::milliseconds kLongest{1000};

std::array<std::atomic<int>, 64> heardCodes{};
std::mutex hookMutex;
std::function<void(AssocEvent*)> hook;

void hear(AssocEvent* event) {
  ++heardCodes.at(static_cast<std::size_t>(event->code));
  std::function<void(AssocEvent*)> now;
  {
    const std::lock_guard<std::mutex> lock(hookMutex);
    now = hook;
  }
  if (now) now(event);
}

long long inMicroseconds(steady_clock::duration time) {
  return std::chrono::duration_cast<std::chrono::microseconds>(time).count();
}

}  // namespace

// One pool of memory for all threads: pools of their own grow by what others give back to them late.
Endurance::Endurance() {
  mallopt(M_ARENA_MAX, 1);
  assoc.registerAssocEventCB(&hear);
  setOperationsCallback(&hear);
  ends_.reserve(static_cast<std::size_t>(rounds()));  // the test's own memory is flat, too
}

Endurance::~Endurance() { inCallback(nullptr); }

int Endurance::rounds() {
  const char* wanted = std::getenv("TEMBRA_ROUNDS");
  return wanted == nullptr ? kShort : std::atoi(wanted);
}

void Endurance::repeat(const std::function<void(int)>& round, const std::function<void()>& before,
                       const std::function<void()>& after) {
  const int parts[] = {std::min(kEarly, rounds() / 2), rounds()};
  std::vector<Footprint> footprints;
  int number = 0;
  for (const int end : parts) {
    if (before) before();
    for (; number < end && !HasFatalFailure(); ++number) {
      round(number);
      router.forget();
    }
    if (after) after();
    router.forget();
    awaitThreads(threads_);
    footprints.push_back(Footprint::now());
    std::printf("round %d: %s\n", number, footprints.back().text().c_str());
  }
  expectFlat(footprints.front(), footprints.back());
}

void Endurance::inCallback(std::function<void(AssocEvent*)> then) {
  const std::lock_guard<std::mutex> lock(hookMutex);
  hook = std::move(then);
}

int Endurance::heard(int code) { return heardCodes.at(static_cast<std::size_t>(code)); }

void Endurance::awaitHeard(int code, int times) {
  const auto end = steady_clock::now() + std::chrono::seconds(10);
  while (heard(code) < times && steady_clock::now() < end) std::this_thread::sleep_for(std::chrono::microseconds(100));
  ASSERT_GE(heard(code), times) << "event " << code;
}

void Endurance::close() {
  const std::atomic closed = steady_clock::now();
  assoc.closeAssocConnection();
  awaitEnd(closed);
}

void Endurance::awaitEnd(const std::atomic<steady_clock::time_point>& closed) {
  kit::stage()->kernel.awaitEnd();
  ends_.push_back(steady_clock::now() - closed.load());
}

void Endurance::expectPromptEnds() {
  ASSERT_FALSE(ends_.empty());
  std::sort(ends_.begin(), ends_.end());
  const auto median = ends_[ends_.size() / 2];
  const auto late = std::upper_bound(ends_.begin(), ends_.end(), kPrompt);
  const auto lateOnes = static_cast<std::size_t>(ends_.end() - late);
  std::printf("%zu ends: median %lld us, %zu over %lld us, longest %lld us\n", ends_.size(), inMicroseconds(median),
              lateOnes, inMicroseconds(kPrompt), inMicroseconds(ends_.back()));
  EXPECT_LT(median, kPrompt);
  EXPECT_LE(lateOnes * 100, ends_.size());
  EXPECT_LT(ends_.back(), kLongest);
}
