#include "campaign/world_clock.h"

#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cstdio>

#include "campaign/real_poll.h"

namespace campaign {
namespace {

constexpr int kDeadlock = 70;

std::atomic<WorldClock*> theWorld{nullptr};

// Nothing will ever happen again: the thread that should have made it happen waits as well.
[[noreturn]] void stopForEver() {
  std::fputs("campaign: every thread waits, and none for a moment in time\n", stderr);
  _exit(kDeadlock);
}

}  // namespace

Time fromTimespec(const timespec& time) { return time.tv_sec * kSecond + time.tv_nsec; }

timespec toTimespec(Time time) {
  return {.tv_sec = static_cast<time_t>(time / kSecond), .tv_nsec = static_cast<long>(time % kSecond)};
}

WorldClock* worldClock() { return theWorld.load(std::memory_order_acquire); }
void enterWorld(WorldClock* clock) { theWorld.store(clock, std::memory_order_release); }

WorldClock::Waiter::Waiter(const Awaited& what) : awaited(what) { sem_init(&woken_, 0, 0); }
WorldClock::Waiter::~Waiter() { sem_destroy(&woken_); }

bool WorldClock::Waiter::sleep() {
  while (sem_wait(&woken_) != 0) {
  }
  return ready_;
}

void WorldClock::Waiter::wake(bool ready) {
  ready_ = ready;
  sem_post(&woken_);
}

Time WorldClock::now() {
  const std::lock_guard lock(mutex_);
  return now_;
}

void WorldClock::enter(Waiter& waiter) {
  const std::lock_guard lock(mutex_);
  waiters_.push_back(&waiter);
  leaveRunning();
}

void WorldClock::threadBegins() {
  const std::lock_guard lock(mutex_);
  ++running_;
}

void WorldClock::threadEnds() {
  const std::lock_guard lock(mutex_);
  leaveRunning();
}

void WorldClock::announce(const void* condition) {
  const std::lock_guard lock(mutex_);
  wakeThose(true, [condition](const Awaited& awaited) { return awaited.condition == condition; });
}

void WorldClock::leaveRunning() {
  --running_;
  if (running_ == 0 && !waiters_.empty() && !wakeReady()) jump();
}

template <typename Test>
bool WorldClock::wakeThose(bool ready, Test test) {
  const auto woken = std::stable_partition(waiters_.begin(), waiters_.end(),
                                           [&test](const Waiter* waiter) { return !test(waiter->awaited); });
  const std::vector<Waiter*> all(woken, waiters_.end());
  waiters_.erase(woken, waiters_.end());
  running_ += static_cast<int>(all.size());
  for (Waiter* const waiter : all) waiter->wake(ready);
  return !all.empty();
}

bool WorldClock::wakeReady() {
  polled_.clear();
  for (const Waiter* waiter : waiters_) {
    polled_.insert(polled_.end(), waiter->awaited.descriptors.begin(), waiter->awaited.descriptors.end());
  }
  if (!polled_.empty()) realPoll(polled_, 0);
  auto result = polled_.begin();
  return wakeThose(true, [&result](const Awaited& awaited) {
    const auto end = result + static_cast<std::ptrdiff_t>(awaited.descriptors.size());
    const bool readable = std::any_of(result, end, [](const pollfd& entry) { return entry.revents != 0; });
    result = end;
    return readable || (awaited.word != nullptr && __atomic_load_n(awaited.word, __ATOMIC_ACQUIRE) != awaited.value);
  });
}

void WorldClock::jump() {
  std::optional<Time> earliest;
  for (const Waiter* waiter : waiters_) {
    const auto& deadline = waiter->awaited.deadline;
    if (deadline && (!earliest || *deadline < *earliest)) earliest = deadline;
  }
  if (!earliest) stopForEver();
  now_ = std::max(now_, *earliest);
  wakeThose(false, [this](const Awaited& awaited) { return awaited.deadline && *awaited.deadline <= now_; });
}

}  // namespace campaign
