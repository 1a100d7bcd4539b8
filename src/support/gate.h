// A gate between threads: shut while anything is under way, open when all of it is done.
#ifndef TEMBRA_SUPPORT_GATE_H
#define TEMBRA_SUPPORT_GATE_H

#include <pthread.h>
#include <atomic>
#include <ctime>

namespace tembra {

/// Any thread may call any operation; the gate must outlive them all (but see endLast). Beginning and ending take no
/// lock unless somebody waits. Needs no construction and no destruction at run time.
class Gate {
 public:
  constexpr Gate() = default;
  Gate(const Gate&) = delete;
  Gate& operator=(const Gate&) = delete;

  void begin() { ++underWay_; }

  // The order of the two counters is what makes a waiter safe: it says that it waits before it looks.
  void end() {
    if (--underWay_ == 0 && waiting_ > 0) wake();
  }

  /// The same for a gate that goes as soon as its waiter goes on: nobody gets past before this has let go of it.
  void endLast() {
    pthread_mutex_lock(&mutex_);
    --underWay_;
    pthread_cond_broadcast(&opened_);
    pthread_mutex_unlock(&mutex_);
  }

  void wait() {
    const Waiter waiter(*this);
    while (underWay_ > 0) pthread_cond_wait(&opened_, &mutex_);
  }

  /// Waits at most this long for the gate to open.
  void waitFor(long seconds) {
    timespec deadline{};
    clock_gettime(CLOCK_MONOTONIC, &deadline);
    deadline.tv_sec += seconds;
    const Waiter waiter(*this);
    while (underWay_ > 0 && pthread_cond_clockwait(&opened_, &mutex_, CLOCK_MONOTONIC, &deadline) == 0) {
    }
  }

 private:
  // Holds the mutex, so that it hears of whatever ends after it looked.
  class Waiter {
   public:
    explicit Waiter(Gate& gate) : gate_(gate) {
      pthread_mutex_lock(&gate_.mutex_);
      ++gate_.waiting_;
    }
    ~Waiter() {
      --gate_.waiting_;
      pthread_mutex_unlock(&gate_.mutex_);
    }
    Waiter(const Waiter&) = delete;
    Waiter& operator=(const Waiter&) = delete;

   private:
    Gate& gate_;
  };

  void wake() {
    pthread_mutex_lock(&mutex_);
    pthread_cond_broadcast(&opened_);
    pthread_mutex_unlock(&mutex_);
  }

  std::atomic<int> underWay_ = 0;
  std::atomic<int> waiting_ = 0;
  pthread_mutex_t mutex_ = PTHREAD_MUTEX_INITIALIZER;
  pthread_cond_t opened_ = PTHREAD_COND_INITIALIZER;
};

}  // namespace tembra

#endif
