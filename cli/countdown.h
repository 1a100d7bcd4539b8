// How long the library will wait for the next answer.
#ifndef TEMBRA_CLI_COUNTDOWN_H
#define TEMBRA_CLI_COUNTDOWN_H

#include <chrono>

namespace tembra::cli {

/// While the library handles something it waits for no answer. The wait before is then counted on, below zero.
class Countdown {
 public:
  /// Negative once the time is over.
  [[nodiscard]] int secondsLeft();

 private:
  std::chrono::steady_clock::time_point end_ = std::chrono::steady_clock::now();
};

}  // namespace tembra::cli

#endif
