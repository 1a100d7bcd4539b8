#include "cli/words/numbers.h"

#include <charconv>

namespace tembra::cli {

std::optional<int> parseNumber(const std::string& text) {
  const bool hexadecimal = text.rfind("0x", 0) == 0 || text.rfind("0X", 0) == 0;
  const char* begin = text.data() + (hexadecimal ? 2 : 0);
  const char* end = text.data() + text.size();
  int number = 0;
  const auto [stopped, error] = std::from_chars(begin, end, number, hexadecimal ? 16 : 10);
  const bool whole = error == std::errc() && stopped == end && !(hexadecimal && number < 0);
  return whole ? std::optional<int>(number) : std::nullopt;
}

}  // namespace tembra::cli
