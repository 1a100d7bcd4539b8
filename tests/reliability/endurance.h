// A test on the real kernel that does the same thing very often.
#ifndef TEMBRA_TESTS_RELIABILITY_ENDURANCE_H
#define TEMBRA_TESTS_RELIABILITY_ENDURANCE_H

#include <array>
#include <atomic>
#include <chrono>
#include <functional>
#include <vector>

#include "receiver/background.h"
#include "receiver/kernel_stage.h"

/// The callback counts, then does what the test wants. The number of rounds is TEMBRA_ROUNDS, or a short one.
class Endurance : public KernelStage {
 protected:
  Endurance();
  ~Endurance() override;

  static int rounds();

  /// Makes three minutes three milliseconds.
  static constexpr int kHaste = 60000;

  /// Does the rounds in two parts, and compares what the process holds after the first with what it holds after the
  /// second. `around` lives while rounds are done.
  void repeat(const std::function<void(int round)>& round, const std::function<void()>& before = nullptr,
              const std::function<void()>& after = nullptr);

  /// What the callback of this code does.
  void inCallback(std::function<void(AssocEvent*)> then);

  static int heard(int code);
  static void awaitHeard(int code, int times);

  /// Closes and takes the time until the receive thread has ended.
  void close();

  /// Takes the time until the receive thread has ended, which somebody else closes: `closed` is looked at afterwards.
  void awaitEnd(const std::atomic<std::chrono::steady_clock::time_point>& closed);

  /// The median end came within 100 ms, at most one of a hundred, which the machine may have delayed, came later, and
  /// none after a second.
  void expectPromptEnds();

 private:
  const std::size_t threads_ = runningThreads();
  std::vector<std::chrono::steady_clock::duration> ends_;
};

#endif
