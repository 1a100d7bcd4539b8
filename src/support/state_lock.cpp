#include "support/state_lock.h"

#include <mutex>
#include <utility>

namespace tembra {
namespace {

constinit std::mutex mutex;
thread_local int heldDepth = 0;
thread_local bool borrowing = false;

}  // namespace

StateLock::StateLock() : taken_(!borrowing) {
  if (!taken_) return;
  if (heldDepth == 0) mutex.lock();
  ++heldDepth;
}

StateLock::~StateLock() {
  if (taken_ && --heldDepth == 0) mutex.unlock();
}

StateUnlocked::StateUnlocked() : depth_(std::exchange(heldDepth, 0)) {
  if (depth_ > 0) mutex.unlock();
}

StateUnlocked::~StateUnlocked() {
  if (depth_ > 0) mutex.lock();
  heldDepth = depth_;
}

StateBorrowed::StateBorrowed() { borrowing = true; }

StateBorrowed::~StateBorrowed() { borrowing = false; }

}  // namespace tembra
