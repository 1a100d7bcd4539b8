// The front end of a run, on a thread of its own.
#ifndef TEMBRA_TESTS_CAMPAIGN_FRONT_END_H
#define TEMBRA_TESTS_CAMPAIGN_FRONT_END_H

#include <thread>
#include <vector>

#include "campaign/plan.h"
#include "campaign/world_clock.h"

namespace campaign {

/// An event of the library.
struct SeenEvent {
  Time at;
  int code;
};

/// How an operation ends; the numbers are those of the command line's exit status.
enum class End { kDone = 0, kFailed = 1, kInterrupted = 130 };

class KitFrontEnd;

class FrontEnd {
 public:
  /// Starts the step. A hang-up, which every thread has to block, interrupts it.
  FrontEnd(const Step& step, KitFrontEnd& kit);
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
  void run(const Step& step, KitFrontEnd& kit);

  int status_ = -1;
  Time ended_ = 0;
  std::vector<SeenEvent> seen_;
  int hasEnded_ = 0;
  std::thread thread_;
};

}  // namespace campaign

#endif
