#include "support/text_writer.h"

#include <algorithm>
#include <cstring>
#include <limits>

namespace tembra {
namespace {

constexpr unsigned kDecimal = 10;
constexpr unsigned kHexadecimal = 16;

}  // namespace

TextWriter& TextWriter::operator<<(const char* piece) { return *this << std::string_view(piece); }

TextWriter& TextWriter::operator<<(std::string_view piece) {
  const std::size_t length = std::min(piece.size(), static_cast<std::size_t>(end_ - next_));
  std::memcpy(next_, piece.data(), length);
  next_ += length;
  *next_ = '\0';
  return *this;
}

TextWriter& TextWriter::operator<<(int number) {
  if (number >= 0) return digits(static_cast<unsigned>(number), kDecimal, 1);
  *this << "-";
  return digits(0U - static_cast<unsigned>(number), kDecimal, 1);
}

TextWriter& TextWriter::operator<<(Hex hex) { return digits(hex.number, kHexadecimal, hex.digits); }

TextWriter& TextWriter::digits(unsigned number, unsigned base, int least) {
  char text[std::numeric_limits<unsigned>::digits10 + 1];
  char* first = std::end(text);
  for (; number != 0 || least > 0; number /= base, --least) *--first = "0123456789abcdef"[number % base];
  return *this << std::string_view(first, static_cast<std::size_t>(std::end(text) - first));
}

}  // namespace tembra
