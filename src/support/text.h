// Texts in fixed fields: read without trusting a NUL, written without leaving the field.
#ifndef TEMBRA_SUPPORT_TEXT_H
#define TEMBRA_SUPPORT_TEXT_H

#include <cstddef>

namespace tembra {

/// Length of a text that may fill its field of `size` bytes without a NUL.
[[nodiscard]] std::size_t textLength(const char* field, std::size_t size);

/// Copies a text with its NUL into a field of `size` bytes, cut at `size` - 1; bytes behind the NUL keep their value.
/// `from` holds at most `fromSize` bytes.
void copyText(char* to, std::size_t size, const char* from, std::size_t fromSize);

/// The same for whole fields; `from` may have no NUL.
template <std::size_t To, std::size_t From>
void copyText(char (&to)[To], const char (&from)[From]) {
  copyText(to, To, from, From);
}

/// The same for a caller's NUL-terminated text; null counts as empty.
template <std::size_t To>
void copyCallersText(char (&to)[To], const char* from) {
  copyText(to, To, from == nullptr ? "" : from, static_cast<std::size_t>(-1));
}

}  // namespace tembra

#endif
