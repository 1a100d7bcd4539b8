// The keys of the device database.
#ifndef TEMBRA_DEPOT_KEYS_H
#define TEMBRA_DEPOT_KEYS_H

#include <string_view>

namespace tembra::depot {

constexpr char kNextIdKey[] = "NextDevid";
constexpr char kVersionKey[] = "Version";

/// A device's key is its id; the keys of its index records have a point behind it.
constexpr bool isDeviceKey(std::string_view key) {
  return key.find('.') == std::string_view::npos && key != kNextIdKey && key != kVersionKey;
}

}  // namespace tembra::depot

#endif
