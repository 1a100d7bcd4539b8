// An event as the kit keeps it: the head that every event has, and the detail of its kind.
#ifndef TEMBRA_FRONTEND_EVENT_H
#define TEMBRA_FRONTEND_EVENT_H

#include <tembra/frontend.h>

#include <string>
#include <variant>

namespace tembra::frontend {

using Detail = std::variant<std::monostate, tembra_found, tembra_device_event, tembra_bridges, tembra_link_button,
                            tembra_account, tembra_step, tembra_warning, tembra_ended>;

/// A structure that is handed out: all zero, but for its size.
template <typename Structure>
[[nodiscard]] Structure sized() {
  Structure structure{};
  structure.size = sizeof structure;
  return structure;
}

[[nodiscard]] std::string eventJson(const tembra_head& head, const Detail& detail);
[[nodiscard]] std::string stateJson(const tembra_state& state);

}  // namespace tembra::frontend

struct tembra_event {
  tembra_head head;
  tembra::frontend::Detail detail;
  std::string json;
};

#endif
