#include "support/text_writer.h"

#include <algorithm>
#include <charconv>
#include <cstring>

namespace tembra {
namespace {

constexpr std::size_t kMostDigits = 11;  // of "-2147483648"

std::string_view between(const char* begin, const char* end) { return {begin, static_cast<std::size_t>(end - begin)}; }

}  // namespace

TextWriter& TextWriter::operator<<(std::string_view piece) {
  const std::size_t length = std::min(piece.size(), static_cast<std::size_t>(end_ - next_));
  std::memcpy(next_, piece.data(), length);
  next_ += length;
  *next_ = '\0';
  return *this;
}

TextWriter& TextWriter::operator<<(int number) {
  char digits[kMostDigits];
  return *this << between(digits, std::to_chars(digits, std::end(digits), number).ptr);
}

TextWriter& TextWriter::operator<<(Hex hex) {
  char digits[kMostDigits];
  const std::string_view text = between(digits, std::to_chars(digits, std::end(digits), hex.number, 16).ptr);
  for (int missing = hex.digits - static_cast<int>(text.size()); missing > 0; --missing) *this << "0";
  return *this << text;
}

}  // namespace tembra
