#include "platform/printable.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace tembra {
namespace {

struct Character {
  char32_t code;  ///< of a byte that begins no UTF-8 character: the byte
  std::size_t length;
};

struct Range {
  char32_t first;
  char32_t last;
};

constexpr bool contains(Range range, char32_t code) { return code >= range.first && code <= range.last; }

// How characters of two, three and four bytes begin, and which codes need that many bytes.
struct Form {
  unsigned char firstBits;
  unsigned char mask;
  Range codes;
};

constexpr std::array kForms = {
    Form{0xC0, 0xE0, {0x80, 0x7FF}},
    Form{0xE0, 0xF0, {0x800, 0xFFFF}},
    Form{0xF0, 0xF8, {0x10000, 0x10FFFF}},
};

constexpr Range kSurrogates{0xD800, 0xDFFF};

constexpr std::array kUnprintable = {
    Range{0x00, 0x1F},     Range{0x7F, 0x9F},      // control characters
    Range{0x061C, 0x061C}, Range{0x200E, 0x200F},  // marks of direction
    Range{0x2028, 0x202E}, Range{0x2066, 0x2069},  // separators, embeddings and overrides; isolates
};

unsigned char byteAt(std::string_view text, std::size_t at) { return static_cast<unsigned char>(text[at]); }

// The character of `length` bytes that the text begins with, or just its first byte.
Character characterOfForm(std::string_view text, const Form& form, std::size_t length) {
  const Character byte{byteAt(text, 0), 1};
  if (text.size() < length) return byte;
  char32_t code = byteAt(text, 0) & ~form.mask & 0xFFU;
  for (std::size_t i = 1; i < length; ++i) {
    if ((byteAt(text, i) & 0xC0U) != 0x80U) return byte;
    code = code << 6U | (byteAt(text, i) & 0x3FU);
  }
  return contains(form.codes, code) && !contains(kSurrogates, code) ? Character{code, length} : byte;
}

Character firstCharacter(std::string_view text) {
  for (std::size_t i = 0; i < kForms.size(); ++i) {
    if ((byteAt(text, 0) & kForms[i].mask) == kForms[i].firstBits) return characterOfForm(text, kForms[i], i + 2);
  }
  return {byteAt(text, 0), 1};
}

bool isUnprintable(char32_t code) {
  return std::any_of(kUnprintable.begin(), kUnprintable.end(), [code](Range range) { return contains(range, code); });
}

}  // namespace

std::string printable(std::string_view text, char mark) {
  std::string shown;
  shown.reserve(text.size());
  while (!text.empty()) {
    const Character character = firstCharacter(text);
    if (isUnprintable(character.code)) {
      shown += mark;
    } else {
      shown += text.substr(0, character.length);
    }
    text.remove_prefix(character.length);
  }
  return shown;
}

}  // namespace tembra
