// The kit's threads: the worker, which runs the operations, and the runner for calls that may take long.
#ifndef TEMBRA_FRONTEND_WORKER_H
#define TEMBRA_FRONTEND_WORKER_H

#include <thread>

#include "inbox.h"
#include "outbox.h"
#include "runner.h"
#include "session.h"

namespace tembra::frontend {

/// The library tells the inbox what happens, as long as this lives.
class Listening {
 public:
  Listening(TembraAssociation& service, Inbox& inbox);
  ~Listening();
  Listening(const Listening&) = delete;
  Listening& operator=(const Listening&) = delete;

 private:
  TembraAssociation& service_;
};

class Worker {
 public:
  explicit Worker(const tembra_options& options);
  ~Worker();
  Worker(const Worker&) = delete;
  Worker& operator=(const Worker&) = delete;

  Inbox& inbox() { return inbox_; }
  Outbox& outbox() { return outbox_; }
  [[nodiscard]] const Outbox& outbox() const { return outbox_; }

 private:
  void work();
  void perform(const Command& command);

  Inbox inbox_;
  Outbox outbox_;
  TembraAssociation& service_;
  const bool keepOpen_;
  int socket_ = 0;
  Runner runner_;
  Watching watching_;
  const Listening listening_;
  std::thread thread_;  // last: it uses all of the others
};

}  // namespace tembra::frontend

#endif
