// The library's list of known Hue bridges, a text of JSON in which the database's texts stand as they are.
#ifndef TEMBRA_FRONTEND_BRIDGE_LIST_H
#define TEMBRA_FRONTEND_BRIDGE_LIST_H

#include <string_view>

#include "event.h"

namespace tembra::frontend {

/// Appends the bridges of the text to the list. False when the text is not what the library writes; the list then has
/// those before.
[[nodiscard]] bool parseBridges(std::string_view text, BridgeList& list);

}  // namespace tembra::frontend

#endif
