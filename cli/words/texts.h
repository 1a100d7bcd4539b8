// Texts that people type and read.
#ifndef TEMBRA_CLI_TEXTS_H
#define TEMBRA_CLI_TEXTS_H

#include <cstddef>
#include <string>
#include <string_view>

#include "words/fitting.h"

namespace tembra::cli {

/// The text of a record's field, which may lack its NUL.
template <std::size_t Size>
[[nodiscard]] std::string fieldText(const char (&field)[Size]) {
  const std::string_view whole(field, Size);
  return std::string(whole.substr(0, whole.find('\0')));
}

using words::characters;
using words::cutText;
using words::firstCharacters;

/// Without the blanks, tabs and ends of lines at both ends, as files of other systems have them.
[[nodiscard]] std::string withoutBlanksAround(const std::string& text);

/// Why a text is no name for a device or a place, after "the text "; empty when it is one.
[[nodiscard]] std::string faultOf(const std::string& text, std::size_t room);

}  // namespace tembra::cli

#endif
