#include "support/state_lock.h"

#include <pthread.h>
#include <ctime>

#include <mutex>
#include <utility>

namespace tembra {
namespace {

std::mutex mutex;
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

timespec inFuture(int milliseconds) {
  constexpr long kPerSecond = 1'000'000'000;
  timespec time{};
  clock_gettime(CLOCK_MONOTONIC, &time);
  const long nanoseconds = time.tv_nsec + milliseconds % 1000 * 1'000'000L;
  time.tv_sec += milliseconds / 1000 + nanoseconds / kPerSecond;
  time.tv_nsec = nanoseconds % kPerSecond;
  return time;
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

// The lock's depth stays as it is: the waiting thread does nothing meanwhile.
bool waitWhile(bool (*isUnderWay)(unsigned), unsigned argument, int milliseconds) {
  makeChanged();
  const timespec end = inFuture(milliseconds);
  ++waiting;
  while (isUnderWay(argument) && pthread_cond_timedwait(&changed, mutex.native_handle(), &end) == 0) {
  }
  --waiting;
  return !isUnderWay(argument);
}

void announceChange() {
  if (waiting > 0) pthread_cond_broadcast(&changed);
}

}  // namespace tembra
