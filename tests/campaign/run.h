// Plays a plan in a world of its own, in the calling process, which is good for one run only.
#ifndef TEMBRA_TESTS_CAMPAIGN_RUN_H
#define TEMBRA_TESTS_CAMPAIGN_RUN_H

#include <functional>
#include <string>
#include <vector>

#include "campaign/plan.h"
#include "campaign/record.h"

namespace campaign {

struct Outcome {
  std::vector<std::string> disagreements;  ///< one sentence each
  std::vector<std::string> reached;        ///< "event 9", "Nest link: status 3": what a campaign has to come by
};

/// Changes what a step is taken to have come to, to see it found.
using Alteration = std::function<void(Record&)>;

/// The front end of a run, and the judge of its steps.
struct Cast {
  Operate operate;
  std::function<std::vector<std::string>(const Record&)> judge;  ///< one sentence for each thing that does not agree
  std::function<std::string()> ending;                           ///< how the last step ended, to be counted
};

/// The plain front end, whose every datagram and event is known beforehand.
[[nodiscard]] Cast plainCast(const Plan& plan);

/// @param makeCast is called in the world of the run
Outcome play(const Plan& plan, const Alteration& alter = nullptr, Cast (*makeCast)(const Plan&) = &plainCast);

}  // namespace campaign

#endif
