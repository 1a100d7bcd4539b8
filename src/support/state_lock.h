// The library's one lock: it guards the object's fields and the shared globals.
#ifndef TEMBRA_SUPPORT_STATE_LOCK_H
#define TEMBRA_SUPPORT_STATE_LOCK_H

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

/// Waits while something is under way, which `isUnderWay(argument)` tells. Call with the lock held; the lock is given
/// up meanwhile, however deep. The thread that ends what is under way calls announceChange, also with the lock held.
/// @return whether it has ended.
bool waitWhile(bool (*isUnderWay)(unsigned), unsigned argument = 0, int milliseconds = kLongestWait);
void announceChange();

}  // namespace tembra

#endif
