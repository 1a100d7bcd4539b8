// Texts that come from records or go into them.
#ifndef TEMBRA_CLI_TEXTS_H
#define TEMBRA_CLI_TEXTS_H

#include <cstddef>
#include <string>
#include <string_view>

namespace tembra::cli {

/// The text of a record's field, which may lack its NUL.
template <std::size_t Size>
[[nodiscard]] std::string fieldText(const char (&field)[Size]) {
  const std::string_view whole(field, Size);
  return std::string(whole.substr(0, whole.find('\0')));
}

/// At most this many bytes, without leaving half a UTF-8 character at the end.
[[nodiscard]] std::string cutText(const std::string& text, std::size_t bytes);

}  // namespace tembra::cli

#endif
