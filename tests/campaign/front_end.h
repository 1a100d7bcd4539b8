// The front end of a run, on a thread of its own.
#ifndef TEMBRA_TESTS_CAMPAIGN_FRONT_END_H
#define TEMBRA_TESTS_CAMPAIGN_FRONT_END_H

#include <functional>
#include <thread>
#include <vector>

#include "campaign/plan.h"
#include "campaign/world_clock.h"

namespace campaign {

/// An event that it fetched.
struct SeenEvent {
  Time at;
  int code;
};

/// How an operation ends; the numbers are those of the command line's exit status.
enum class End { kDone = 0, kFailed = 1, kNoConnection = 3, kInterrupted = 130 };

/// Carries out a step on the calling thread. A hang-up, which every thread has to block, interrupts it.
/// `onEvent` is called for each event of the library that the front end fetches.
using Operate = std::function<End(const Step& step, const std::function<void(int code)>& onEvent)>;

class FrontEnd {
 public:
  /// Starts the step.
  FrontEnd(const Step& step, const Operate& operate);
  FrontEnd(const FrontEnd&) = delete;
  FrontEnd& operator=(const FrontEnd&) = delete;

  /// Waits for its end, or for the moment. @return whether it has ended
  bool awaitEnd(std::optional<Time> moment = std::nullopt) const;

  /// As a hang-up of its terminal does.
  static void interrupt();

  // When it has ended:
  [[nodiscard]] int status() const { return status_; }
  [[nodiscard]] Time ended() const { return ended_; }
  [[nodiscard]] const std::vector<SeenEvent>& seen() const { return seen_; }

  ~FrontEnd() { thread_.join(); }

 private:
  void run(const Step& step, const Operate& operate);

  int status_ = -1;
  Time ended_ = 0;
  std::vector<SeenEvent> seen_;
  int hasEnded_ = 0;
  std::thread thread_;
};

}  // namespace campaign

#endif
