// A gate between threads: shut while anything is under way, open when all of it is done.
#ifndef TEMBRA_SUPPORT_GATE_H
#define TEMBRA_SUPPORT_GATE_H

#include <pthread.h>
#include <ctime>

namespace tembra {

/// Any thread may call any operation. Plain POSIX objects: they need no construction and no destruction at run time.
class Gate {
 public:
  constexpr Gate() = default;
  Gate(const Gate&) = delete;
  Gate& operator=(const Gate&) = delete;

  void begin() { count(1); }
  void end() { count(-1); }

  void wait() {
    pthread_mutex_lock(&mutex_);
    while (underWay_ > 0) pthread_cond_wait(&changed_, &mutex_);
    pthread_mutex_unlock(&mutex_);
  }

  /// Waits at most this long for the gate to open.
  void waitFor(long seconds) {
    timespec deadline{};
    clock_gettime(CLOCK_MONOTONIC, &deadline);
    deadline.tv_sec += seconds;
    pthread_mutex_lock(&mutex_);
    while (underWay_ > 0 && pthread_cond_clockwait(&changed_, &mutex_, CLOCK_MONOTONIC, &deadline) == 0) {
    }
    pthread_mutex_unlock(&mutex_);
  }

 private:
  void count(int change) {
    pthread_mutex_lock(&mutex_);
    underWay_ += change;
    pthread_cond_broadcast(&changed_);
    pthread_mutex_unlock(&mutex_);
  }

  pthread_mutex_t mutex_ = PTHREAD_MUTEX_INITIALIZER;
  pthread_cond_t changed_ = PTHREAD_COND_INITIALIZER;
  int underWay_ = 0;
};

}  // namespace tembra

#endif
