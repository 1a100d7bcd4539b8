#include "texts.h"

namespace tembra::frontend {
namespace {

constexpr char kReplacement[] = "\xEF\xBF\xBD";  // U+FFFD

struct Utf8Form {
  unsigned char mask;
  unsigned char lead;
  std::size_t length;
  char32_t smallest;  ///< a smaller number in this length is an overlong form
};

constexpr Utf8Form kForms[] = {
    {0x80, 0x00, 1, 0}, {0xE0, 0xC0, 2, 0x80}, {0xF0, 0xE0, 3, 0x800}, {0xF8, 0xF0, 4, 0x10000}};

bool isNumber(char32_t number) { return number <= 0x10FFFF && (number < 0xD800 || number > 0xDFFF); }

bool isControl(char32_t number) {
  const bool steers = number < 0x20 || (number >= 0x7F && number < 0xA0);
  const bool turns = number == 0x61C || number == 0x200E || number == 0x200F ||
                     (number >= 0x202A && number <= 0x202E) || (number >= 0x2066 && number <= 0x2069);
  return steers || turns;
}

}  // namespace

Character firstCharacter(std::string_view text) {
  if (text.empty()) return {0, 0};
  const auto lead = static_cast<unsigned char>(text[0]);
  for (const Utf8Form& form : kForms) {
    if ((lead & form.mask) != form.lead) continue;
    if (text.size() < form.length) return {0, 0};
    char32_t number = lead & static_cast<unsigned char>(~form.mask);
    for (std::size_t i = 1; i < form.length; ++i) {
      const auto byte = static_cast<unsigned char>(text[i]);
      if ((byte & 0xC0) != 0x80) return {0, 0};
      number = number << 6 | (byte & 0x3F);
    }
    return number >= form.smallest && isNumber(number) ? Character{number, form.length} : Character{0, 0};
  }
  return {0, 0};
}

std::string cleaned(std::string_view text) {
  std::string clean;
  while (!text.empty()) {
    const std::size_t length = firstCharacter(text).length;
    clean.append(length == 0 ? std::string_view(kReplacement) : text.substr(0, length));
    text.remove_prefix(length == 0 ? 1 : length);
  }
  return clean;
}

bool isPlainText(std::string_view text) {
  while (!text.empty()) {
    const Character first = firstCharacter(text);
    if (first.length == 0 || isControl(first.number)) return false;
    text.remove_prefix(first.length);
  }
  return true;
}

void putText(char* field, std::size_t size, std::string_view text) {
  std::size_t length = 0;
  while (length < text.size()) {
    const std::size_t next = firstCharacter(text.substr(length)).length;
    if (next == 0 || length + next >= size) break;
    length += next;
  }
  text.copy(field, length);  // of an empty view, too, which has no address
  field[length] = '\0';
}

}  // namespace tembra::frontend
