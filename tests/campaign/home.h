// The simulated router on a thread of its own, and the one who pushes its buttons.
#ifndef TEMBRA_TESTS_CAMPAIGN_HOME_H
#define TEMBRA_TESTS_CAMPAIGN_HOME_H

#include <set>
#include <string>
#include <thread>

#include "campaign/flows.h"
#include "sim/core/outcome.h"

namespace campaign {

class Home {
 public:
  explicit Home(int latencyMs);
  Home(const Home&) = delete;
  Home& operator=(const Home&) = delete;

  tembra::sim::Outcome ask(const std::string& request);
  [[nodiscard]] bool runs(Server server) const { return !dead_.contains(wordOf(server)); }

  /// @return the simulator's exit status
  int stop();

 private:
  void run(int latencyMs);

  std::set<std::string> dead_;
  int status_ = -1;
  std::thread router_;
};

}  // namespace campaign

#endif
