// Texts that people type and read.
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

/// Number of UTF-8 characters.
[[nodiscard]] std::size_t characters(const std::string& text);

/// At most this many UTF-8 characters.
[[nodiscard]] std::string firstCharacters(const std::string& text, std::size_t count);

/// Without the blanks, tabs and ends of lines at both ends, as files of other systems have them.
[[nodiscard]] std::string withoutBlanksAround(const std::string& text);

/// The text in lines of at most so many characters, broken at blanks. A longer word stays whole. What continues a line
/// that begins with blanks begins with blanks, too.
[[nodiscard]] std::string wrapped(const std::string& text, std::size_t columns);

/// Why a text is no name for a device or a place, after "the text "; empty when it is one.
[[nodiscard]] std::string faultOf(const std::string& text, std::size_t room);

}  // namespace tembra::cli

#endif
