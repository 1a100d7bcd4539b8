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
  [[nodiscard]] const char* begin() const { return first_; }
  [[nodiscard]] const char* end() const { return std::end(text_); }

 private:
  char text_[std::numeric_limits<unsigned>::digits10 + 1];
  char* first_ = std::end(text_);
};

using Decimal = Digits<10>;
using Hexadecimal = Digits<16>;

}  // namespace

// Too few for a call of memcpy to be worth it.
template <typename FewCharacters>
TextWriter& TextWriter::put(const FewCharacters& characters) {
  for (const char character : characters) {
    if (next_ != end_) *next_++ = character;
  }
  *next_ = '\0';
  return *this;
}

TextWriter& TextWriter::operator<<(const char* piece) { return *this << std::string_view(piece); }

TextWriter& TextWriter::operator<<(std::string_view piece) {
  const std::size_t length = std::min(piece.size(), static_cast<std::size_t>(end_ - next_));
  std::memcpy(next_, piece.data(), length);
  next_ += length;
  *next_ = '\0';
  return *this;
}

TextWriter& TextWriter::operator<<(int number) {
  if (number >= 0) return put(Decimal(static_cast<unsigned>(number), 1));
  return (*this << "-").put(Decimal(0U - static_cast<unsigned>(number), 1));
}

TextWriter& TextWriter::operator<<(Hex hex) { return put(Hexadecimal(hex.number, hex.digits)); }

}  // namespace tembra
