// The command line front end, run by its own main function on a thread of its own.
#ifndef TEMBRA_TESTS_CAMPAIGN_FRONT_END_H
#define TEMBRA_TESTS_CAMPAIGN_FRONT_END_H

#include <string>
#include <thread>
#include <vector>

#include "campaign/world_clock.h"

namespace campaign {

/// A line of its standard output.
struct Said {
  Time at;
  std::string text;
};

class FrontEnd {
 public:
  /// Starts `tembra-assoc ARGUMENTS`.
  explicit FrontEnd(std::vector<std::string> arguments);
  FrontEnd(const FrontEnd&) = delete;
  FrontEnd& operator=(const FrontEnd&) = delete;

  /// Waits for its end, or for the moment. @return whether it has ended
  bool awaitEnd(std::optional<Time> moment = std::nullopt) const;

  /// As a hang-up of its terminal does.
  static void interrupt();

  // When it has ended:
  [[nodiscard]] int status() const { return status_; }
  [[nodiscard]] Time ended() const { return ended_; }
  [[nodiscard]] const std::vector<Said>& said() const { return said_; }

  ~FrontEnd() { thread_.join(); }

 private:
  void run();

  std::vector<std::string> arguments_;
  int status_ = -1;
  Time ended_ = 0;
  std::vector<Said> said_;
  int hasEnded_ = 0;
  std::thread thread_;
};

}  // namespace campaign

#endif
