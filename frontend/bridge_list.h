// The library's list of known Hue bridges, a text of JSON in which the database's texts stand as they are.
#ifndef TEMBRA_FRONTEND_BRIDGE_LIST_H
#define TEMBRA_FRONTEND_BRIDGE_LIST_H

#include <tembra/frontend.h>

#include <string_view>

namespace tembra::frontend {

/// Appends the bridges of the text to the list. False when the text is not what the library writes, or has more bridges
/// than the list has room for; the list then has those before.
[[nodiscard]] bool parseBridges(std::string_view text, tembra_bridges& list);

}  // namespace tembra::frontend

#endif
