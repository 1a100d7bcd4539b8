#include "texts.h"

namespace tembra::cli {
namespace {

bool continuesCharacter(char c) { return (static_cast<unsigned char>(c) & 0xC0U) == 0x80U; }

}  // namespace

std::string cutText(const std::string& text, std::size_t bytes) {
  if (text.size() <= bytes) return text;
  while (bytes > 0 && continuesCharacter(text[bytes])) --bytes;
  return text.substr(0, bytes);
}

}  // namespace tembra::cli
