// Records as bytes with offsets: nothing here is shared with the library's own structs.
#ifndef TEMBRA_TESTS_ORACLE_RECORD_H
#define TEMBRA_TESTS_ORACLE_RECORD_H

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>
#include <string>

namespace oracle {

template <std::size_t Size>
struct Record {
  std::array<unsigned char, Size> bytes{};

  [[nodiscard]] int number(std::size_t offset) const {
    int value = 0;
    std::memcpy(&value, bytes.data() + offset, sizeof value);
    return value;
  }
  void setNumber(std::size_t offset, int value) { std::memcpy(bytes.data() + offset, &value, sizeof value); }

  void setWord(std::size_t offset, int value) {
    setByte(offset, value & 0xFF);
    setByte(offset + 1, value >> 8 & 0xFF);
  }

  [[nodiscard]] int byte(std::size_t offset) const { return bytes[offset]; }
  void setByte(std::size_t offset, int value) { bytes[offset] = static_cast<unsigned char>(value); }

  /// The text at the offset, up to a NUL or the end of its field.
  [[nodiscard]] std::string text(std::size_t offset = 0, std::size_t field = Size) const {
    const auto* first = reinterpret_cast<const char*>(bytes.data()) + offset;
    return {first, strnlen(first, std::min(field, Size - offset))};
  }

  /// Writes the text and its NUL; a text that is too long is cut, and what stands behind the NUL stays.
  void setText(const std::string& text, std::size_t offset = 0, std::size_t field = Size) {
    const std::size_t length = std::min(text.size(), std::min(field, Size - offset) - 1);
    std::copy_n(text.begin(), length, bytes.begin() + static_cast<std::ptrdiff_t>(offset));
    bytes[offset + length] = 0;
  }

  /// Copies the first bytes of another record to the offset.
  template <std::size_t Other>
  void put(const Record<Other>& record, std::size_t offset, std::size_t length = Other) {
    std::copy_n(record.bytes.begin(), length, bytes.begin() + static_cast<std::ptrdiff_t>(offset));
  }

  void clear() { bytes.fill(0); }
  void clear(std::size_t offset, std::size_t length) {
    std::fill_n(bytes.begin() + static_cast<std::ptrdiff_t>(offset), length, static_cast<unsigned char>(0));
  }
};

}  // namespace oracle

#endif
