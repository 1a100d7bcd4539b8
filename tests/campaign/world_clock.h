// The time of a simulated world in which nobody waits for real.
//
// Every thread of the process belongs to the world from its creation on: the front end, the library's threads, the
// simulated router and the one that directs them. A thread that waits (for a descriptor, a moment, a word in memory or
// a condition) waits here. When the last one waits, those that have what they wait for go on; when none has, the clock
// jumps to the earliest moment that anybody waits for.
#ifndef TEMBRA_TESTS_CAMPAIGN_WORLD_CLOCK_H
#define TEMBRA_TESTS_CAMPAIGN_WORLD_CLOCK_H

#include <poll.h>
#include <semaphore.h>

#include <cstdint>
#include <ctime>
#include <mutex>
#include <optional>
#include <span>
#include <vector>

namespace campaign {

/// Nanoseconds since the boot of the simulated world.
using Time = std::int64_t;

inline constexpr Time kMillisecond = 1'000'000;
inline constexpr Time kSecond = 1000 * kMillisecond;

Time fromTimespec(const timespec& time);
timespec toTimespec(Time time);

/// What a thread waits for; the first of it ends the wait.
struct Awaited {
  std::optional<Time> deadline;
  std::span<pollfd> descriptors;
  const int* word = nullptr;  ///< as a futex: until it is no longer `value`
  int value = 0;
  const void* condition = nullptr;  ///< until it is announced
};

class WorldClock {
 public:
  /// Time begins here, with the calling thread as the only one.
  explicit WorldClock(Time now) : now_(now) {}
  WorldClock(const WorldClock&) = delete;
  WorldClock& operator=(const WorldClock&) = delete;

  [[nodiscard]] Time now();

  /// `release` runs when the thread is waiting already, so that nothing it lets happen is missed.
  /// @return false when the deadline ended the wait
  template <typename Release>
  bool wait(const Awaited& awaited, Release release) {
    Waiter waiter(awaited);
    enter(waiter);
    release();
    return waiter.sleep();
  }
  bool wait(const Awaited& awaited) {
    return wait(awaited, [] {});
  }
  void sleepUntil(Time moment) { wait({.deadline = moment, .descriptors = {}}); }

  void announce(const void* condition);

  void threadBegins();
  void threadEnds();

 private:
  class Waiter {
   public:
    explicit Waiter(const Awaited& what);
    ~Waiter();
    Waiter(const Waiter&) = delete;
    Waiter& operator=(const Waiter&) = delete;
    bool sleep();
    void wake(bool ready);

    const Awaited awaited;

   private:
    sem_t woken_{};
    bool ready_ = false;
  };

  void enter(Waiter& waiter);
  void leaveRunning();
  bool wakeReady();
  void jump();
  template <typename Test>
  bool wakeThose(bool ready, Test test);

  std::mutex mutex_;
  Time now_;
  int running_ = 1;
  std::vector<Waiter*> waiters_;
  std::vector<pollfd> polled_;
};

/// The world that this process lives in; null: the real one.
WorldClock* worldClock();
void enterWorld(WorldClock* clock);

}  // namespace campaign

#endif
