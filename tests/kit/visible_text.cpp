// Looks at every character of every line that is traced.
#include "kit/visible_text.h"

#include <algorithm>

namespace kit {
namespace {

bool isPlain(char c) { return c >= ' ' && c <= '~'; }

void appendCharacter(std::string& shown, char c) {
  constexpr char digits[] = "0123456789abcdef";
  const auto byte = static_cast<unsigned char>(c);
  if (isPlain(c)) {
    shown += c;
  } else if (c == '\n') {
    shown += "\\n";
  } else {
    shown += {'\\', 'x', digits[byte >> 4], digits[byte & 15]};
  }
}

}  // namespace

void appendVisible(std::string& shown, std::string_view text) {
  if (std::all_of(text.begin(), text.end(), isPlain)) {
    shown += text;
  } else {
    for (const char c : text) appendCharacter(shown, c);
  }
}

std::string visible(std::string_view text) {
  std::string shown;
  appendVisible(shown, text);
  return shown;
}

}  // namespace kit
