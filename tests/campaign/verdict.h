// Whether what happened in a step agrees: the front end's status, the events it saw, what the servers were told, and
// the device database.
#ifndef TEMBRA_TESTS_CAMPAIGN_VERDICT_H
#define TEMBRA_TESTS_CAMPAIGN_VERDICT_H

#include <string>
#include <vector>

#include "campaign/record.h"

namespace campaign {

/// One sentence for each thing that does not agree.
std::vector<std::string> disagreementsIn(const Record& record);

}  // namespace campaign

#endif
