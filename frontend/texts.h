// Texts in the kit's fixed fields: always UTF-8, always ended by a NUL.
#ifndef TEMBRA_FRONTEND_TEXTS_H
#define TEMBRA_FRONTEND_TEXTS_H

#include <cstddef>
#include <cstring>
#include <string>
#include <string_view>

namespace tembra::frontend {

struct Character {
  char32_t number;
  std::size_t length;  ///< in bytes; 0: none
};

/// The character that begins the text; none when the text does not begin with a whole UTF-8 character.
[[nodiscard]] Character firstCharacter(std::string_view text);

/// The text with U+FFFD in the place of each byte that belongs to no UTF-8 character.
[[nodiscard]] std::string cleaned(std::string_view text);

/// Whether the text is UTF-8 without control characters (C0, DEL, C1) and bidirectional controls.
[[nodiscard]] bool isPlainText(std::string_view text);

/// Copies what fits of a text, up to the end of a character.
void putText(char* field, std::size_t size, std::string_view text);

template <std::size_t N>
void putText(char (&field)[N], std::string_view text) {
  putText(field, N, text);
}

/// A text of the library, which may have no NUL and no UTF-8.
template <std::size_t N>
[[nodiscard]] std::string libraryText(const char (&field)[N]) {
  return cleaned({field, strnlen(field, N)});
}

}  // namespace tembra::frontend

#endif
