#include "countdown.h"

#include <tembra/service.h>

namespace tembra::cli {

using std::chrono::steady_clock;

int Countdown::secondsLeft() {
  const auto now = steady_clock::now();
  const long long left = tembra_wait_left();
  if (left >= 0) end_ = now + std::chrono::milliseconds(left);
  return static_cast<int>(std::chrono::ceil<std::chrono::seconds>(end_ - now).count());
}

}  // namespace tembra::cli
