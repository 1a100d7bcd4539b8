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

}  // namespace

// For too few characters to make a call of memcpy worth it.
TextWriter& TextWriter::put(const char* first, const char* last) {
  for (; first != last && next_ != end_; ++first) *next_++ = *first;
  *next_ = '\0';
  return *this;
}

TextWriter& TextWriter::operator<<(std::string_view piece) {
  const std::size_t length = std::min(piece.size(), static_cast<std::size_t>(end_ - next_));
  std::memcpy(next_, piece.data(), length);
  next_ += length;
  *next_ = '\0';
  return *this;
}

TextWriter& TextWriter::operator<<(int number) {
  if (number < 0) *this << "-";
  const unsigned magnitude = number < 0 ? 0U - static_cast<unsigned>(number) : static_cast<unsigned>(number);
  const Digits<10> digits(magnitude, 1);
  return put(digits.begin(), digits.end());
}

TextWriter& TextWriter::operator<<(Hex hex) {
  const Digits<16> digits(hex.number, hex.digits);
  return put(digits.begin(), digits.end());
}

}  // namespace tembra
