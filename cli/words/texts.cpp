#include "cli/words/texts.h"

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

// In a line that does not fit, a gap of several blanks that stands between two columns is the best place to break.
std::string wrappedLine(const std::string& line, std::size_t columns) {
  if (characters(line) <= columns) return line;
  const std::size_t indent = std::min(line.find_first_not_of(' '), line.size());
  const std::size_t deepest = columns / 8;
  const std::string continuation(indent == 0 ? 0 : std::min(indent, deepest) + 2, ' ');
  std::string lines;
  std::size_t column = 0;
  for (std::size_t begin = indent - std::min(indent, deepest), end = 0; begin < line.size(); begin = end) {
    const std::size_t word = std::min(line.find_first_not_of(' ', begin), line.size());
    end = std::min(line.find(' ', word), line.size());
    std::string piece = line.substr(begin, end - begin);
    const bool isGap = indent > 0 && word - begin > 1;
    if (column > 0 && (isGap || column + characters(piece) > columns)) {
      lines += "\n" + continuation;
      column = continuation.size();
      piece = line.substr(word, end - word);
    }
    lines += piece;
    column += characters(piece);
  }
  return lines;
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

std::string wrapped(const std::string& text, std::size_t columns) {
  std::string lines;
  for (std::size_t begin = 0; begin < text.size();) {
    const std::size_t end = std::min(text.find('\n', begin), text.size());
    lines += wrappedLine(text.substr(begin, end - begin), columns) + (end < text.size() ? "\n" : "");
    begin = end + 1;
  }
  return lines;
}

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
