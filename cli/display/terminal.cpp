#include "cli/display/terminal.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <iostream>

#include "cli/display/json_line.h"
#include "cli/words/texts.h"
#include "platform/printable.h"

namespace tembra::cli {

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

void printText(const std::string& text) { printLine(fitted(text, STDOUT_FILENO)); }

void complain(const std::string& sentence) {
  std::cerr << fitted("tembra-assoc: " + printable(sentence), STDERR_FILENO) << std::endl;
}

}  // namespace tembra::cli
