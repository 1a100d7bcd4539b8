// Whether what the kit said in a step agrees with its own promises and with what happened.
#ifndef TEMBRA_TESTS_CAMPAIGN_KIT_VERDICT_H
#define TEMBRA_TESTS_CAMPAIGN_KIT_VERDICT_H

#include <string>
#include <vector>

#include "campaign/kit_front_end.h"
#include "campaign/record.h"
#include "campaign/run.h"

namespace campaign {

/// One sentence for each thing that does not agree.
std::vector<std::string> kitDisagreementsIn(const Record& record, const KitStory& story);

/// The front end on the kit with its judge.
[[nodiscard]] Cast kitCast(const Plan& plan);

}  // namespace campaign

#endif
