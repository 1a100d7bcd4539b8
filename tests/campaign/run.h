// Plays a plan in a world of its own, in the calling process, which is good for one run only.
#ifndef TEMBRA_TESTS_CAMPAIGN_RUN_H
#define TEMBRA_TESTS_CAMPAIGN_RUN_H

#include <string>
#include <vector>

#include "campaign/plan.h"

namespace campaign {

struct Outcome {
  std::vector<std::string> disagreements;  ///< one sentence each
  std::vector<std::string> reached;        ///< "event 9", "add: nobody-pressed": what a campaign has to come by
};

Outcome play(const Plan& plan);

}  // namespace campaign

#endif
