// What is going to happen in a run: drawn from a seed, the same for the same seed.
#ifndef TEMBRA_TESTS_CAMPAIGN_PLAN_H
#define TEMBRA_TESTS_CAMPAIGN_PLAN_H

#include <optional>
#include <string>
#include <vector>

#include "campaign/flows.h"
#include "campaign/world_clock.h"

namespace campaign {

/// Something that is asked of the simulated router.
struct Action {
  Time after;  ///< since the front end's start; 0: before it starts
  std::string request;
};

/// One command of the front end, and what happens around it.
struct Step {
  Goal goal = Goal::kAdd;
  std::string word;  ///< the radios of a cancel or reset, the lamp's name
  std::string role = "lcd";
  std::string name;      ///< of the device that is added
  std::string device;    ///< whose button is pressed
  Time pause = kSecond;  ///< before the front end starts
  std::vector<Action> actions;
  std::optional<Time> interrupt;
  bool isTried = false;  ///< the one that the scenario is about
  bool mustSucceed = false;
};

/// A run that is compared with another one, and not judged.
struct Spoofing {
  bool isStrict = false;
  bool hasSpoofers = false;
};

struct Plan {
  unsigned long seed = 0;
  const Flow* flow = nullptr;
  const ScenarioName* scenario = nullptr;
  int latencyMs = 200;
  std::vector<Step> steps;
  std::optional<Spoofing> spoofing;

  [[nodiscard]] std::string text() const;
};

/// Seeds in a row go through every flow with every scenario.
std::size_t pairs();
Plan planFor(unsigned long seed);

/// The operation in words, "add as web".
std::string goalText(const Step& step);

}  // namespace campaign

#endif
