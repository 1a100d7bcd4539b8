// One thread, one loop: readable descriptors and timers in simulated time.
#ifndef TEMBRA_SIM_CORE_EVENT_LOOP_H
#define TEMBRA_SIM_CORE_EVENT_LOOP_H

#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <utility>

namespace tembra::sim {

class EventLoop {
 public:
  using Task = std::function<void()>;
  using TimerId = std::uint64_t;

  /// `speed`: simulated seconds per real second.
  explicit EventLoop(double speed);

  /// Runs `task` once, `delay` of simulated time from now. Timers that fall due together run in the order of asking.
  TimerId after(std::chrono::milliseconds delay, Task task);
  /// Does nothing for a timer that has run.
  void cancel(TimerId id);

  /// Runs `onReadable` whenever `descriptor` can be read, until it is forgotten.
  void watch(int descriptor, Task onReadable);
  void forget(int descriptor);

  /// Simulated time since the loop was created.
  std::chrono::milliseconds now() const;

  void run();
  void stop();

 private:
  using Clock = std::chrono::steady_clock;
  using Deadline = std::pair<Clock::time_point, TimerId>;

  void runDueTimers();
  int pollTimeout() const;
  void serveReadable();

  double speed_;
  Clock::time_point start_;
  std::map<Deadline, Task> timers_;
  std::map<int, Task> watches_;
  TimerId lastTimer_ = 0;
  bool running_ = false;
};

}  // namespace tembra::sim

#endif
