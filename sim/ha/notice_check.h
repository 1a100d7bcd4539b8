// What a notice to the HA server must and must not contain.
#ifndef TEMBRA_SIM_HA_NOTICE_CHECK_H
#define TEMBRA_SIM_HA_NOTICE_CHECK_H

#include <string_view>
#include <vector>

#include "tembra/records.h"

namespace tembra::sim {

inline constexpr char kRemoveAllText[] = "removeAllDevices";

bool isRemoveAll(const HaNotice& notice);

/// The mistakes of a notice, one sentence each.
std::vector<std::string_view> mistakesIn(const HaNotice& notice);

}  // namespace tembra::sim

#endif
