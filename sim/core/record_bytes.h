// Records come out of datagrams by one bounded copy and go back the same way.
#ifndef TEMBRA_SIM_CORE_RECORD_BYTES_H
#define TEMBRA_SIM_CORE_RECORD_BYTES_H

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

namespace tembra::sim {

/// The record at the start of `bytes`; what `bytes` does not reach is zero.
template <typename Record>
Record recordFrom(std::span<const unsigned char> bytes) {
  static_assert(std::is_trivially_copyable_v<Record>);
  Record record{};
  if (!bytes.empty()) std::memcpy(&record, bytes.data(), std::min(bytes.size(), sizeof record));
  return record;
}

template <typename Record>
std::vector<unsigned char> bytesOf(const Record& record) {
  static_assert(std::is_trivially_copyable_v<Record>);
  std::vector<unsigned char> bytes(sizeof record);
  std::memcpy(bytes.data(), &record, sizeof record);
  return bytes;
}

inline bool allZero(std::span<const unsigned char> bytes) {
  return std::all_of(bytes.begin(), bytes.end(), [](unsigned char byte) { return byte == 0; });
}

template <std::size_t N>
bool terminated(const char (&field)[N]) {
  return std::memchr(field, 0, N) != nullptr;
}

/// The text in a field that may lack its NUL.
template <std::size_t N>
std::string textIn(const char (&field)[N]) {
  return {field, strnlen(field, N)};
}

/// Whether a text ends within its field and nothing but zeros follows it.
template <std::size_t N>
bool zeroBehindText(const char (&field)[N]) {
  const std::string text = textIn(field);
  return text.size() < N && std::all_of(field + text.size(), field + N, [](char byte) { return byte == 0; });
}

/// Writes a text into a zeroed field and always leaves a NUL.
template <std::size_t N>
void setText(char (&field)[N], std::string_view text) {
  text.copy(field, N - 1);
}

}  // namespace tembra::sim

#endif
