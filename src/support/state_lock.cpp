#include "support/state_lock.h"

#include <pthread.h>
#include <ctime>

#include <mutex>
#include <utility>

namespace tembra {
namespace {

// Its waits are measured by the monotonic clock: the time of day may jump. Never destroyed, because the receive thread
// may outlive the process's static objects.
struct Changed {
  Changed() noexcept {
    pthread_condattr_t attributes;
    pthread_condattr_init(&attributes);
    pthread_condattr_setclock(&attributes, CLOCK_MONOTONIC);
    pthread_cond_init(&condition, &attributes);
  }
  pthread_cond_t condition{};
};

constexpr long kLongestWaitSeconds = 2;

constinit std::mutex mutex;
Changed changed;
thread_local int heldDepth = 0;

}  // namespace

StateLock::StateLock() {
  if (heldDepth == 0) mutex.lock();
  ++heldDepth;
}

StateLock::~StateLock() {
  if (--heldDepth == 0) mutex.unlock();
}

StateUnlocked::StateUnlocked() : depth_(std::exchange(heldDepth, 0)) {
  if (depth_ > 0) mutex.unlock();
}

StateUnlocked::~StateUnlocked() {
  if (depth_ > 0) mutex.lock();
  heldDepth = depth_;
}

// The depth stays as it is: the waiting thread does nothing meanwhile.
void waitWhile(bool (*isUnderWay)()) {
  timespec end{};
  clock_gettime(CLOCK_MONOTONIC, &end);
  end.tv_sec += kLongestWaitSeconds;
  while (isUnderWay() && pthread_cond_timedwait(&changed.condition, mutex.native_handle(), &end) == 0) {
  }
}

void announceChange() { pthread_cond_broadcast(&changed.condition); }

}  // namespace tembra
