// A fuzzer's input, read as a script from the front; what it lacks reads as zeros.
#ifndef TEMBRA_FUZZ_SUPPORT_SCRIPT_H
#define TEMBRA_FUZZ_SUPPORT_SCRIPT_H

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <span>

namespace fuzz {

/// Memory of exactly the size that is said, so that a byte too far is caught.
class ExactBytes {
 public:
  explicit ExactBytes(std::size_t size) : bytes_(std::make_unique<unsigned char[]>(size)), size_(size) {}

  [[nodiscard]] unsigned char* data() const { return bytes_.get(); }
  [[nodiscard]] std::size_t size() const { return size_; }

 private:
  std::unique_ptr<unsigned char[]> bytes_;
  std::size_t size_;
};

/// A caller's text: NUL-terminated, or none at all.
class CallersText {
 public:
  CallersText() = default;
  explicit CallersText(std::span<const std::uint8_t> from) : text_(std::make_unique<char[]>(from.size() + 1)) {
    if (!from.empty()) std::memcpy(text_.get(), from.data(), from.size());
  }

  /// Null when there is none.
  [[nodiscard]] char* get() const { return text_.get(); }

 private:
  std::unique_ptr<char[]> text_;
};

class Script {
 public:
  Script(const std::uint8_t* data, std::size_t size) : rest_(data, size) {}

  [[nodiscard]] bool atEnd() const { return rest_.empty(); }

  std::span<const std::uint8_t> take(std::size_t most) {
    const auto taken = rest_.first(std::min(most, rest_.size()));
    rest_ = rest_.subspan(taken.size());
    return taken;
  }
  std::span<const std::uint8_t> takeRest() { return take(rest_.size()); }

  /// A record or a number of this type as it stands.
  template <typename T>
  T read() {
    T value{};
    const auto from = take(sizeof value);
    if (!from.empty()) std::memcpy(&value, from.data(), from.size());
    return value;
  }
  unsigned char byte() { return read<unsigned char>(); }
  unsigned short word() { return read<unsigned short>(); }

  /// A small number, often one that means nothing.
  int smallNumber() { return read<signed char>(); }

  /// One of `count` choices.
  std::size_t choose(std::size_t count) { return byte() % count; }

  /// A text with a length byte before it; length 255 is no text.
  CallersText text() {
    constexpr unsigned char none = 255;
    const unsigned char length = byte();
    return length == none ? CallersText() : CallersText(take(length));
  }

 private:
  std::span<const std::uint8_t> rest_;
};

}  // namespace fuzz

#endif
