#include "cli/words/texts.h"

#include <algorithm>
#include <nlohmann/json.hpp>

#include "platform/printable.h"

namespace tembra::cli {
namespace {

bool isUtf8(const std::string& text) {
  const std::string quoted =
      nlohmann::json(text).dump(-1, ' ', true, nlohmann::json::error_handler_t::ignore);  // drops what is none
  return nlohmann::json::parse(quoted).get<std::string>() == text;
}

}  // namespace

std::string withoutBlanksAround(const std::string& text) {
  constexpr char kBlanks[] = " \t\r\n";
  const auto begin = text.find_first_not_of(kBlanks);
  return begin == std::string::npos ? "" : text.substr(begin, text.find_last_not_of(kBlanks) + 1 - begin);
}

std::string faultOf(const std::string& text, std::size_t room) {
  if (!isUtf8(text)) return "is not UTF-8";
  if (printable(text) != text) return "has control characters";
  if (std::ranges::all_of(text, [](char c) { return c == ' '; })) return "is empty";
  if (text.size() <= room) return "";
  return "has " + std::to_string(text.size()) + " bytes, and there is room for " + std::to_string(room);
}

}  // namespace tembra::cli
