// What a notice to the HA server must and must not contain.
#ifndef TEMBRA_SIM_HA_NOTICE_CHECK_H
#define TEMBRA_SIM_HA_NOTICE_CHECK_H

#include <string_view>
#include <vector>

#include "tembra/records.h"

namespace tembra::sim {

inline constexpr int kMarkAdded = 255;  ///< ZwNodeInfo::requestMark
inline constexpr int kMarkRemoved = 254;
inline constexpr int kCodeAdded = 10;  ///< ZbDeviceInfo::msgCode
inline constexpr int kCodeRemoved = 2;
inline constexpr char kRemoveAllText[] = "removeAllDevices";

bool isRemoveAll(const HaNotice& notice);

/// The mistakes of a notice, one sentence each.
std::vector<std::string_view> mistakesIn(const HaNotice& notice);

}  // namespace tembra::sim

#endif
