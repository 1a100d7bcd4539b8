// A tembra-sim that runs for one test.
#ifndef TEMBRA_TESTS_SIM_SUPPORT_RUNNING_SIM_H
#define TEMBRA_TESTS_SIM_SUPPORT_RUNNING_SIM_H

#include <string>
#include <vector>

#include "sim/core/outcome.h"
#include "support/program.h"

namespace tembra::sim::test {

inline constexpr const char* kControl = "/tmp/tembra-sim.sock";

class RunningSim {
 public:
  /// Returns when the simulator is ready, or has ended. `options` come after "run --latency 5".
  explicit RunningSim(const std::vector<std::string>& options = {});

  Outcome ask(const std::string& request) const;
  /// Asks and expects it to be done.
  void tell(const std::string& request) const;
  /// Waits until no server has more to say: what it sent is in the caller's socket then.
  void awaitIdle() const;

  /// Stops the simulator. @return its exit status
  int stop();
  Program& program() { return program_; }
  bool ready() const;

 private:
  bool idle() const;

  Program program_;
};

}  // namespace tembra::sim::test

#endif
