// A thread for calls of the library that may take long: a shell command, the database's lock, the sleep of a reset.
#ifndef TEMBRA_FRONTEND_RUNNER_H
#define TEMBRA_FRONTEND_RUNNER_H

#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>

#include "inbox.h"

namespace tembra::frontend {

/// Runs one call at a time and tells the inbox when it has ended.
class Runner {
 public:
  explicit Runner(Inbox& inbox);
  ~Runner();  ///< waits for the call that runs
  Runner(const Runner&) = delete;
  Runner& operator=(const Runner&) = delete;

  void run(std::function<void()> call);  ///< only while none runs

  /// Whether the calling thread is a runner: what the library reports there is no answer of a device.
  [[nodiscard]] static bool isThisThread();

 private:
  void work();

  Inbox& inbox_;
  std::mutex mutex_;
  std::condition_variable changed_;
  std::function<void()> call_;
  bool quits_ = false;
  std::thread thread_;
};

/// A thread that no signal of the program disturbs.
[[nodiscard]] std::thread startThread(std::function<void()> work);

}  // namespace tembra::frontend

#endif
