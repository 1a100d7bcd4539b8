// The library's one lock: it guards the object's fields and the shared globals.
#ifndef TEMBRA_SUPPORT_STATE_LOCK_H
#define TEMBRA_SUPPORT_STATE_LOCK_H

#include <ctime>

namespace tembra {

/// Holds the lock for a public call or a step of the receive thread. It nests, because the router's Logger, which is
/// called with the lock held, may call the library back.
class StateLock {
 public:
  StateLock();
  ~StateLock();
  StateLock(const StateLock&) = delete;
  StateLock& operator=(const StateLock&) = delete;
};

/// Gives up the calling thread's hold on the lock, however deep, for a wait: for a callback, a sleep, the database's
/// file lock, another thread. Afterwards the hold is as it was, but the guarded fields may have changed. Does nothing
/// on a thread that does not hold the lock.
class StateUnlocked {
 public:
  StateUnlocked();
  ~StateUnlocked();
  StateUnlocked(const StateUnlocked&) = delete;
  StateUnlocked& operator=(const StateUnlocked&) = delete;

 private:
  int depth_;
};

constexpr int kLongestWait = 2000;  // milliseconds: for what takes a moment when all goes well

/// A wait for changes that has an end.
class ChangeWait {
 public:
  explicit ChangeWait(int milliseconds);
  ~ChangeWait();
  ChangeWait(const ChangeWait&) = delete;
  ChangeWait& operator=(const ChangeWait&) = delete;

  /// Waits for a change, or for nothing. False at the end.
  bool next();

 private:
  timespec end_{};
};

/// Waits while something is under way. Call with the lock held; the lock is given up meanwhile, however deep. The
/// thread that ends what is under way calls announceChange, also with the lock held. @return whether it has ended.
template <typename Condition>
bool waitWhile(Condition isUnderWay, int milliseconds = kLongestWait) {
  ChangeWait wait(milliseconds);
  while (isUnderWay()) {
    if (!wait.next()) return !isUnderWay();
  }
  return true;
}
void announceChange();

}  // namespace tembra

#endif
