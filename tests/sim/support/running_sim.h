// A tembra-sim that runs for one test.
#ifndef TEMBRA_TESTS_SIM_SUPPORT_RUNNING_SIM_H
#define TEMBRA_TESTS_SIM_SUPPORT_RUNNING_SIM_H

#include <string>
#include <vector>

#include "kit/database.h"
#include "kit/program.h"
#include "sim/control/control_path.h"
#include "sim/core/outcome.h"

namespace tembra::sim::test {

/// The simulator's database, read through Depot.
inline constexpr kit::Database kDatabase;

inline const std::string kControl = defaultControlPath();

/// How tembra-sim ends with these arguments.
[[nodiscard]] kit::Ended simulator(std::vector<std::string> arguments);

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
  kit::Program& program() { return program_; }
  [[nodiscard]] bool ready() const { return ready_; }

 private:
  bool idle() const;

  kit::Program program_;
  bool ready_;
};

}  // namespace tembra::sim::test

#endif
