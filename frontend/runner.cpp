#include "runner.h"

#include <pthread.h>

#include <csignal>

namespace tembra::frontend {
namespace {

thread_local bool isRunner = false;

/// Blocks every signal for the threads that are started meanwhile.
class SignalsBlocked {
 public:
  SignalsBlocked() {
    sigset_t all;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &before_);
  }
  ~SignalsBlocked() { pthread_sigmask(SIG_SETMASK, &before_, nullptr); }
  SignalsBlocked(const SignalsBlocked&) = delete;
  SignalsBlocked& operator=(const SignalsBlocked&) = delete;

 private:
  sigset_t before_{};
};

}  // namespace

std::thread startThread(std::function<void()> work) {
  const SignalsBlocked blocked;
  return std::thread(std::move(work));
}

Runner::Runner(Inbox& inbox) : inbox_(inbox), thread_(startThread([this] { work(); })) {}

Runner::~Runner() {
  {
    const std::lock_guard lock(mutex_);
    quits_ = true;
    changed_.notify_all();
  }
  thread_.join();
}

void Runner::run(std::function<void()> call) {
  const std::lock_guard lock(mutex_);
  call_ = std::move(call);
  changed_.notify_all();
}

bool Runner::isThisThread() { return isRunner; }

void Runner::work() {
  isRunner = true;
  std::unique_lock lock(mutex_);
  while (true) {
    changed_.wait(lock, [this] { return call_ || quits_; });
    if (!call_) return;
    lock.unlock();
    call_();
    lock.lock();
    call_ = nullptr;
    inbox_.callEnded();
  }
}

}  // namespace tembra::frontend
