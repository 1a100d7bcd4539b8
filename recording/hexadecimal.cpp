#include "recording/hexadecimal.h"

#include <charconv>
#include <system_error>

namespace tembra::recording {

std::string hexadecimal(std::span<const unsigned char> bytes) {
  constexpr char digits[] = "0123456789abcdef";
  std::string text;
  for (const unsigned char byte : bytes) {
    text += digits[byte >> 4];
    text += digits[byte & 0xF];
  }
  return text;
}

std::optional<std::vector<unsigned char>> bytesFrom(std::string_view digits) {
  if (digits.size() % 2 != 0) return std::nullopt;
  std::vector<unsigned char> bytes;
  for (; !digits.empty(); digits.remove_prefix(2)) {
    unsigned char byte = 0;
    const char* const pair = digits.data();
    const auto [end, error] = std::from_chars(pair, pair + 2, byte, 16);
    if (error != std::errc() || end != pair + 2) return std::nullopt;
    bytes.push_back(byte);
  }
  return bytes;
}

}  // namespace tembra::recording
