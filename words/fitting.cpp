#include "fitting.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>

namespace tembra::words {
namespace {

bool continuesCharacter(char c) { return (static_cast<unsigned char>(c) & 0xC0U) == 0x80U; }

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

std::string wrapped(const std::string& text, std::size_t columns) {
  std::string lines;
  for (std::size_t begin = 0; begin < text.size();) {
    const std::size_t end = std::min(text.find('\n', begin), text.size());
    lines += wrappedLine(text.substr(begin, end - begin), columns) + (end < text.size() ? "\n" : "");
    begin = end + 1;
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

std::optional<std::size_t> roomOfTerminal(int descriptor) {
  constexpr std::size_t kUsualColumns = 80;
  if (isatty(descriptor) != 1) return std::nullopt;
  winsize size{};
  const bool isTold = ioctl(descriptor, TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
  const std::size_t columns = isTold ? size.ws_col : kUsualColumns;
  return columns > 1 ? columns - 1 : 1;
}

std::string fitted(const std::string& text, int descriptor) {
  const auto room = roomOfTerminal(descriptor);
  return room ? wrapped(text, *room) : text;
}

}  // namespace tembra::words
