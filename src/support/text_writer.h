// Texts put together in fixed fields. Formatting a log line with printf takes longer than the classification that the
// line reports.
#ifndef TEMBRA_SUPPORT_TEXT_WRITER_H
#define TEMBRA_SUPPORT_TEXT_WRITER_H

#include <cstddef>
#include <string_view>

#include "support/text.h"

namespace tembra {

/// A number in hexadecimal, lower case, with leading zeros up to `digits`.
struct Hex {
  unsigned number;
  int digits;
};

/// Writes pieces one behind the other, cut so that a NUL fits behind them. From the first piece on the text has a NUL.
/// The bytes behind the NUL keep their value.
class TextWriter {
 public:
  constexpr TextWriter(char* out, std::size_t size) : start_(out), next_(out), end_(out + size - 1) {}

  TextWriter& operator<<(const char* piece) { return *this << std::string_view(piece); }
  TextWriter& operator<<(std::string_view piece);
  TextWriter& operator<<(int number);
  TextWriter& operator<<(Hex hex);

  [[nodiscard]] const char* text() const { return start_; }
  [[nodiscard]] std::size_t length() const { return static_cast<std::size_t>(next_ - start_); }

 private:
  char* start_;
  char* next_;
  char* end_;
};

/// The text of a field that may have no NUL, at most `most` characters of it.
template <std::size_t Size>
[[nodiscard]] std::string_view fieldText(const char (&field)[Size], std::size_t most = Size) {
  return {field, textLength(field, most)};
}

}  // namespace tembra

#endif
