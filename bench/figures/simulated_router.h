// The simulated router as a process of its own.
#ifndef TEMBRA_BENCH_FIGURES_SIMULATED_ROUTER_H
#define TEMBRA_BENCH_FIGURES_SIMULATED_ROUTER_H

#include <sys/types.h>

#include <string>

namespace bench {

/// Runs without any latency and with an empty database at the real path, until the object ends.
class SimulatedRouter {
 public:
  SimulatedRouter();
  ~SimulatedRouter();
  SimulatedRouter(const SimulatedRouter&) = delete;
  SimulatedRouter& operator=(const SimulatedRouter&) = delete;

  /// Presses a device's button as soon as the router adds.
  static void press(const std::string& device);

 private:
  pid_t process_ = 0;
};

}  // namespace bench

#endif
