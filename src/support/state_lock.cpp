#include "support/state_lock.h"

#include <mutex>

namespace tembra {
namespace {

constinit std::recursive_mutex mutex;
thread_local int heldDepth = 0;

}  // namespace

StateLock::StateLock() {
  mutex.lock();
  ++heldDepth;
}

StateLock::~StateLock() {
  --heldDepth;
  mutex.unlock();
}

StateUnlocked::StateUnlocked() : depth_(heldDepth) {
  for (; heldDepth > 0; --heldDepth) mutex.unlock();
}

StateUnlocked::~StateUnlocked() {
  for (; heldDepth < depth_; ++heldDepth) mutex.lock();
}

}  // namespace tembra
