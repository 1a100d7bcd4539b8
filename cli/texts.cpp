#include "texts.h"

#include <algorithm>
#include <nlohmann/json.hpp>

#include "platform/printable.h"

namespace tembra::cli {
namespace {

bool continuesCharacter(char c) { return (static_cast<unsigned char>(c) & 0xC0U) == 0x80U; }

bool isUtf8(const std::string& text) {
  const std::string quoted =
      nlohmann::json(text).dump(-1, ' ', true, nlohmann::json::error_handler_t::ignore);  // drops what is none
  return nlohmann::json::parse(quoted).get<std::string>() == text;
}

}  // namespace

std::string cutText(const std::string& text, std::size_t bytes) {
  if (text.size() <= bytes) return text;
  while (bytes > 0 && continuesCharacter(text[bytes])) --bytes;
  return text.substr(0, bytes);
}

std::size_t characters(const std::string& text) {
  return static_cast<std::size_t>(std::ranges::count_if(text, [](char c) { return !continuesCharacter(c); }));
}

std::string firstCharacters(const std::string& text, std::size_t count) {
  std::size_t end = 0;
  while (end < text.size() && (continuesCharacter(text[end]) || count-- > 0)) ++end;
  return text.substr(0, end);
}

std::string faultOf(const std::string& text, std::size_t room) {
  if (!isUtf8(text)) return "is not UTF-8";
  if (printable(text) != text) return "has control characters";
  if (std::ranges::all_of(text, [](char c) { return c == ' '; })) return "is empty";
  if (text.size() <= room) return "";
  return "has " + std::to_string(text.size()) + " bytes, and there is room for " + std::to_string(room);
}

}  // namespace tembra::cli
