// Whether what the front-end kit said in a step agrees with its own promises, and with what happened.
#ifndef TEMBRA_TESTS_CAMPAIGN_VERDICT_H
#define TEMBRA_TESTS_CAMPAIGN_VERDICT_H

#include <string>
#include <vector>

#include "campaign/kit_front_end.h"
#include "campaign/record.h"

namespace campaign {

/// One sentence for each thing that does not agree.
std::vector<std::string> disagreementsIn(const Record& record, const KitStory& story);

}  // namespace campaign

#endif
