// Strict mode, which believes fewer senders and fewer files. <tembra/service.h> says what it does.
#ifndef TEMBRA_SUPPORT_STRICT_MODE_H
#define TEMBRA_SUPPORT_STRICT_MODE_H

#include <atomic>

namespace tembra {

/// 0 or 1; negative until somebody asks.
extern std::atomic<int> strictMode;
int decideStrictMode();

[[nodiscard]] inline bool isStrict() {
  const int mode = strictMode.load(std::memory_order_relaxed);
  return (mode >= 0 ? mode : decideStrictMode()) != 0;
}

}  // namespace tembra

#endif
