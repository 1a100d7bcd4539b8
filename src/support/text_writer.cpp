#include "support/text_writer.h"

#include <algorithm>
#include <cstring>
#include <limits>

namespace tembra {
namespace {

// The digits of a number, right-aligned in a field; a base that is known here is divided by without a division.
template <unsigned Base>
class Digits {
 public:
  Digits(unsigned number, int least) {
    for (; number != 0 || least > 0; number /= Base, --least) *--first_ = "0123456789abcdef"[number % Base];
  }
  [[nodiscard]] std::string_view text() const { return {first_, static_cast<std::size_t>(std::end(text_) - first_)}; }

 private:
  char text_[std::numeric_limits<unsigned>::digits10 + 1];
  char* first_ = std::end(text_);
};

using Decimal = Digits<10>;
using Hexadecimal = Digits<16>;

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
  if (number >= 0) return *this << Decimal(static_cast<unsigned>(number), 1).text();
  return *this << "-" << Decimal(0U - static_cast<unsigned>(number), 1).text();
}

TextWriter& TextWriter::operator<<(Hex hex) { return *this << Hexadecimal(hex.number, hex.digits).text(); }

}  // namespace tembra
