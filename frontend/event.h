// An event as the kit keeps it: the head that every event has, and the detail of its kind.
#ifndef TEMBRA_FRONTEND_INTERNAL_EVENT_H
#define TEMBRA_FRONTEND_INTERNAL_EVENT_H

#include <tembra/frontend.h>

#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "sized.h"

namespace tembra::frontend {

struct BridgeList : tembra_bridges {
  BridgeList() : tembra_bridges(sized<tembra_bridges>()) {}
  void add(std::string_view mac, std::string_view address, std::string_view user);

  std::vector<tembra_bridge> bridges;
};

using Detail = std::variant<std::monostate, tembra_found, tembra_device_event, BridgeList, tembra_link_button,
                            tembra_account, tembra_step, tembra_warning, tembra_ended, std::vector<tembra_device>>;

[[nodiscard]] std::string eventJson(const tembra_head& head, const Detail& detail);
/// The same for the flight recorder and for watchers, who have no room for a list of devices: only their number.
[[nodiscard]] std::string shortEventJson(const tembra_event& event);
[[nodiscard]] std::string stateJson(const tembra_state& state);

}  // namespace tembra::frontend

struct tembra_event {
  tembra_head head;
  tembra::frontend::Detail detail;
  std::string json;
};

#endif
