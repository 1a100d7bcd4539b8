// Signals of the front end's process, as many as a busy one gets.
#ifndef TEMBRA_TESTS_RECEIVER_SIGNAL_STORM_H
#define TEMBRA_TESTS_RECEIVER_SIGNAL_STORM_H

#include <sys/time.h>

#include <atomic>
#include <csignal>

/// SIGALRM a thousand times a second, with a handler that does not restart what it interrupts.
class SignalStorm {
 public:
  SignalStorm() {
    struct sigaction action = {};
    action.sa_handler = [](int) { ++taken_; };
    sigaction(SIGALRM, &action, nullptr);
    setEvery(1000);
  }
  ~SignalStorm() { setEvery(0); }
  SignalStorm(const SignalStorm&) = delete;
  SignalStorm& operator=(const SignalStorm&) = delete;

  /// How many signals any thread has taken.
  static int taken() { return taken_; }

 private:
  static void setEvery(int microseconds) {
    const itimerval timer = {{0, microseconds}, {0, microseconds}};
    setitimer(ITIMER_REAL, &timer, nullptr);
  }

  static inline std::atomic<int> taken_{0};
};

#endif
