// How long the library will wait for the next answer, reckoned from what it reports.
#ifndef TEMBRA_CLI_COUNTDOWN_H
#define TEMBRA_CLI_COUNTDOWN_H

#include <chrono>

namespace tembra::cli {

/// The library tells events, not time-outs; this mirrors its waiting times. It is an upper bound only before the first
/// answer: an operation inherits what is left of the wait that was running when it began. Answers of which the library
/// reports nothing prolong its wait.
class Countdown {
 public:
  Countdown();

  /// An event that a daemon's answer caused: the wait begins anew.
  void heard(int eventCode);

  /// Negative once the time is over.
  [[nodiscard]] int secondsLeft() const;

 private:
  std::chrono::seconds wait_;
  std::chrono::steady_clock::time_point began_;
};

}  // namespace tembra::cli

#endif
