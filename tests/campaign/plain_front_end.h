// A front end on the plain contract: one operation, every event, nobody to ask.
#ifndef TEMBRA_TESTS_CAMPAIGN_PLAIN_FRONT_END_H
#define TEMBRA_TESTS_CAMPAIGN_PLAIN_FRONT_END_H

#include <functional>

#include "campaign/front_end.h"

namespace campaign {

/// An Operate.
[[nodiscard]] End operate(const Step& step, const std::function<void(int code)>& onEvent);

}  // namespace campaign

#endif
