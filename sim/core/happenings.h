// Things that happen on the router and that a scenario may wait for.
#ifndef TEMBRA_SIM_CORE_HAPPENINGS_H
#define TEMBRA_SIM_CORE_HAPPENINGS_H

#include <array>
#include <functional>
#include <string_view>
#include <utility>

namespace tembra::sim {

enum class Happening {
  kAdd,
  kRemove,
  kCancel,
  kReset,
  kZigbeeAdd,
  kZigbeeRemove,
  kZigbeeCancel,
  kZigbeeReset,
  kHueDiscover,
  kHueAdd,
  kHueBulb,
  kHueRefresh,
  kHueRemove,
  kNestLink,
  kNestUnlink,
  kAdded,
  kRemoved,
  kRemovedAll
};

/// The names that scenario files use.
inline constexpr std::array<std::pair<Happening, std::string_view>, 18> kHappeningNames{{
    {Happening::kAdd, "add"},  // a command arrived at the Z-Wave server
    {Happening::kRemove, "remove"},
    {Happening::kCancel, "cancel"},
    {Happening::kReset, "reset"},
    {Happening::kZigbeeAdd, "zigbee-add"},  // at the ZigBee server
    {Happening::kZigbeeRemove, "zigbee-remove"},
    {Happening::kZigbeeCancel, "zigbee-cancel"},
    {Happening::kZigbeeReset, "zigbee-reset"},
    {Happening::kHueDiscover, "hue-discover"},  // at the Hue server
    {Happening::kHueAdd, "hue-add"},
    {Happening::kHueBulb, "hue-bulb"},
    {Happening::kHueRefresh, "hue-refresh"},
    {Happening::kHueRemove, "hue-remove"},
    {Happening::kNestLink, "nest-link"},  // at the Nest server
    {Happening::kNestUnlink, "nest-unlink"},
    {Happening::kAdded, "added"},            // the HA server stored a device
    {Happening::kRemoved, "removed"},        // the HA server dropped a device
    {Happening::kRemovedAll, "removed-all"}  // the HA server dropped every device
}};

/// One listener is enough: the scenario.
class Happenings {
 public:
  using Listener = std::function<void(Happening)>;
  void listen(Listener listener) { listener_ = std::move(listener); }
  void happened(Happening what) const {
    if (listener_) listener_(what);
  }

 private:
  Listener listener_;
};

}  // namespace tembra::sim

#endif
