// Texts as they fit into a field or a terminal.
#ifndef TEMBRA_WORDS_FITTING_H
#define TEMBRA_WORDS_FITTING_H

#include <cstddef>
#include <optional>
#include <string>

namespace tembra::words {

/// At most this many bytes, without leaving half a UTF-8 character at the end.
[[nodiscard]] std::string cutText(const std::string& text, std::size_t bytes);

/// Number of UTF-8 characters.
[[nodiscard]] std::size_t characters(const std::string& text);

/// At most this many UTF-8 characters.
[[nodiscard]] std::string firstCharacters(const std::string& text, std::size_t count);

/// How many characters fit into a line of the terminal: one less than it has columns, because a full line would make
/// some terminals begin another one. Of 80 columns where it does not tell. Nothing when it is no terminal.
[[nodiscard]] std::optional<std::size_t> roomOfTerminal(int descriptor);

/// The text with lines that fit the terminal, broken at blanks. A longer word stays whole, and what continues a line
/// that begins with blanks begins with blanks, too. The text itself when it is no terminal.
[[nodiscard]] std::string fitted(const std::string& text, int descriptor);

}  // namespace tembra::words

#endif
