// A gate between threads: shut while something is under way, open when it is done.
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

  void shut() { set(true); }
  void open() { set(false); }

  [[nodiscard]] bool isShut() {
    pthread_mutex_lock(&mutex_);
    const bool shut = shut_;
    pthread_mutex_unlock(&mutex_);
    return shut;
  }

  void wait() {
    pthread_mutex_lock(&mutex_);
    while (shut_) pthread_cond_wait(&changed_, &mutex_);
    pthread_mutex_unlock(&mutex_);
  }

  /// Waits at most this long for the gate to open.
  void waitFor(long seconds) {
    timespec deadline{};
    clock_gettime(CLOCK_REALTIME, &deadline);
    deadline.tv_sec += seconds;
    pthread_mutex_lock(&mutex_);
    while (shut_ && pthread_cond_timedwait(&changed_, &mutex_, &deadline) == 0) {
    }
    pthread_mutex_unlock(&mutex_);
  }

 private:
  void set(bool shut) {
    pthread_mutex_lock(&mutex_);
    shut_ = shut;
    pthread_cond_broadcast(&changed_);
    pthread_mutex_unlock(&mutex_);
  }

  pthread_mutex_t mutex_ = PTHREAD_MUTEX_INITIALIZER;
  pthread_cond_t changed_ = PTHREAD_COND_INITIALIZER;
  bool shut_ = false;
};

}  // namespace tembra

#endif
