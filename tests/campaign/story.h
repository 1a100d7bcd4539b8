// What happened in a step, for people.
#ifndef TEMBRA_TESTS_CAMPAIGN_STORY_H
#define TEMBRA_TESTS_CAMPAIGN_STORY_H

#include <string>

#include "campaign/record.h"

namespace campaign {

/// Line by line, with the seconds since the step began.
std::string story(const Record& record);

/// "   3.2170 s"
std::string seconds(Time time);

}  // namespace campaign

#endif
