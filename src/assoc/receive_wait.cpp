// What front ends may know about the receive that is under way.
#include <tembra/service.h>

#include <algorithm>
#include <cerrno>

#include "assoc/connection.h"
#include "support/state_lock.h"

using tembra::currentReceive;

namespace {

// A receive that began meanwhile will do: what was under way at the call is over then, even if the thread is busy
// again.
bool isBusySince(unsigned begun) {
  const tembra::CurrentReceive& now = currentReceive();
  return now.isServed && !now.isUnderWay && now.begun == begun;
}

}  // namespace

int tembra_settle(int milliseconds) {
  const tembra::StateLock lock;
  if (tembra::isReceiveThread()) return EDEADLK;
  return tembra::waitWhile(isBusySince, currentReceive().begun, std::max(milliseconds, 0)) ? 0 : ETIMEDOUT;
}

long long tembra_wait_left() {
  constexpr long long kPerSecond = 1'000'000'000;
  constexpr long long kPerMillisecond = 1'000'000;
  constexpr long long kPerMicrosecond = 1'000;
  const tembra::StateLock lock;
  const tembra::CurrentReceive& receive = currentReceive();
  if (!receive.isUnderWay) return -1;
  timespec now{};
  clock_gettime(CLOCK_MONOTONIC, &now);
  const long long left = (receive.begin.tv_sec + receive.timeout.tv_sec - now.tv_sec) * kPerSecond +
                         receive.timeout.tv_usec * kPerMicrosecond + (receive.begin.tv_nsec - now.tv_nsec);
  return std::max((left + kPerMillisecond - 1) / kPerMillisecond, 0LL);
}
