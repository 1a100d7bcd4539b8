// Things that happen on the router and that a scenario may wait for.
#ifndef TEMBRA_SIM_CORE_HAPPENINGS_H
#define TEMBRA_SIM_CORE_HAPPENINGS_H

#include <array>
#include <functional>
#include <string_view>
#include <utility>

namespace tembra::sim {

enum class Happening { kAdd, kRemove, kCancel, kReset, kAdded, kRemoved, kRemovedAll };

/// The names that scenario files use.
inline constexpr std::array<std::pair<Happening, std::string_view>, 7> kHappeningNames{{
    {Happening::kAdd, "add"},                // an add command arrived
    {Happening::kRemove, "remove"},          // a remove command arrived
    {Happening::kCancel, "cancel"},          // a cancel command arrived
    {Happening::kReset, "reset"},            // a reset command arrived
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
