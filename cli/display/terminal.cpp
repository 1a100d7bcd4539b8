#include "cli/display/terminal.h"

#include <fcntl.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <iostream>

#include "cli/display/json_line.h"
#include "cli/words/texts.h"
#include "platform/printable.h"

namespace tembra::cli {
namespace {

int errorDescriptor = STDERR_FILENO;

}  // namespace

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

void keepStandardErrorForComplaints() {
  const int kept = fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
  const int nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
  if (kept >= 0 && nowhere >= 0 && dup2(nowhere, STDERR_FILENO) >= 0) errorDescriptor = kept;
  if (nowhere >= 0) close(nowhere);
}

void complain(const std::string& sentence) {
  const std::string line = fitted("tembra-assoc: " + printable(sentence), errorDescriptor) + "\n";
  for (std::size_t done = 0; done < line.size();) {
    const ssize_t written = write(errorDescriptor, line.data() + done, line.size() - done);
    if (written <= 0) return;
    done += static_cast<std::size_t>(written);
  }
}

}  // namespace tembra::cli
