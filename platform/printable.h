// Texts of radios, bridges and databases, made fit for terminals and logs.
#ifndef TEMBRA_PLATFORM_PRINTABLE_H
#define TEMBRA_PLATFORM_PRINTABLE_H

#include <string>
#include <string_view>

namespace tembra {

/// The text with `mark` in place of every character that steers a terminal or changes the order in which a line is
/// read: the control characters (U+0000 to U+001F, U+007F to U+009F, also as single bytes that are no part of a UTF-8
/// character), the line and paragraph separators and the bidirectional controls. Other bytes stay as they are.
[[nodiscard]] std::string printable(std::string_view text, char mark = '?');

}  // namespace tembra

#endif
