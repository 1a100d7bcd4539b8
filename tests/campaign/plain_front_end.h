// A front end on the plain contract: one operation, every event, nobody to ask.
#ifndef TEMBRA_TESTS_CAMPAIGN_PLAIN_FRONT_END_H
#define TEMBRA_TESTS_CAMPAIGN_PLAIN_FRONT_END_H

#include <functional>

#include "campaign/plan.h"

namespace campaign {

/// How an operation ends; the numbers are those of the command line's exit status.
enum class End { kDone = 0, kFailed = 1, kNoConnection = 3, kInterrupted = 130 };

/// Carries out the step on the calling thread. A hang-up, which every thread has to block, interrupts it.
/// @param onEvent is called for each event that the front end fetches
[[nodiscard]] End operate(const Step& step, const std::function<void(int code)>& onEvent);

}  // namespace campaign

#endif
