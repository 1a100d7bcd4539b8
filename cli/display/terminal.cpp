#include "cli/display/terminal.h"

#include <fcntl.h>
#include <unistd.h>

#include <iostream>

#include "cli/display/json_line.h"
#include "platform/printable.h"
#include "words/fitting.h"

namespace tembra::cli {
namespace {

int errorDescriptor = STDERR_FILENO;

}  // namespace

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
