#include "support/state_lock.h"

#include <pthread.h>
#include <ctime>

#include <mutex>
#include <utility>

namespace tembra {
namespace {

constexpr long kLongestWaitSeconds = 2;

constinit std::mutex mutex;
thread_local int heldDepth = 0;

pthread_cond_t changed;
bool isChangedMade = false;
int waiting = 0;

// Measures the waits by the monotonic clock, because the time of day may jump. Made for the first wait: nothing of the
// library runs when it is loaded. Never destroyed, because the receive thread may outlive the process's statics.
void makeChanged() {
  if (std::exchange(isChangedMade, true)) return;
  pthread_condattr_t attributes;
  pthread_condattr_init(&attributes);
  pthread_condattr_setclock(&attributes, CLOCK_MONOTONIC);
  pthread_cond_init(&changed, &attributes);
}

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
  makeChanged();
  timespec end{};
  clock_gettime(CLOCK_MONOTONIC, &end);
  end.tv_sec += kLongestWaitSeconds;
  ++waiting;
  while (isUnderWay() && pthread_cond_timedwait(&changed, mutex.native_handle(), &end) == 0) {
  }
  --waiting;
}

void announceChange() {
  if (waiting > 0) pthread_cond_broadcast(&changed);
}

}  // namespace tembra
