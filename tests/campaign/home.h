// The simulated router on a thread of its own, and the one who pushes its buttons.
#ifndef TEMBRA_TESTS_CAMPAIGN_HOME_H
#define TEMBRA_TESTS_CAMPAIGN_HOME_H

#include <string>
#include <thread>

#include "sim/core/outcome.h"

namespace campaign {

class Home {
 public:
  explicit Home(int latencyMs);
  Home(const Home&) = delete;
  Home& operator=(const Home&) = delete;

  tembra::sim::Outcome ask(const std::string& request);

  /// @return the simulator's exit status
  int stop();

 private:
  void run(int latencyMs);

  int status_ = -1;
  std::thread router_;
};

}  // namespace campaign

#endif
