#include "support/state_lock.h"

#include <mutex>

namespace tembra {
namespace {

constinit std::recursive_mutex mutex;
thread_local int heldDepth = 0;
thread_local bool borrowing = false;

}  // namespace

StateLock::StateLock() : taken_(!borrowing) {
  if (!taken_) return;
  mutex.lock();
  ++heldDepth;
}

StateLock::~StateLock() {
  if (!taken_) return;
  --heldDepth;
  mutex.unlock();
}

StateUnlocked::StateUnlocked() : depth_(heldDepth) {
  for (; heldDepth > 0; --heldDepth) mutex.unlock();
}

StateUnlocked::~StateUnlocked() {
  for (; heldDepth < depth_; ++heldDepth) mutex.lock();
}

StateBorrowed::StateBorrowed() { borrowing = true; }

StateBorrowed::~StateBorrowed() { borrowing = false; }

}  // namespace tembra
