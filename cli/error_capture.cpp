#include "error_capture.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <array>
#include <iostream>
#include <sstream>

#include "platform/printable.h"

namespace tembra::cli {
namespace {

std::string contentOf(int file) {
  std::string text;
  std::array<char, 4096> bytes{};
  ssize_t count = 0;
  while ((count = pread(file, bytes.data(), bytes.size(), static_cast<off_t>(text.size()))) > 0) {
    text.append(bytes.data(), static_cast<std::size_t>(count));
  }
  return text;
}

}  // namespace

// Where the system has no descriptor left, everything goes where it went.
ErrorCapture::ErrorCapture()
    : standardError_(fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, STDERR_FILENO + 1)),
      kept_(memfd_create("errors", MFD_CLOEXEC)) {
  if (standardError_ >= 0 && kept_ >= 0) dup2(kept_, STDERR_FILENO);
}

ErrorCapture::~ErrorCapture() {
  finish();
  for (const std::string& line : lines_) std::cerr << printable(line) << '\n';
}

void ErrorCapture::finish() {
  if (standardError_ >= 0) dup2(standardError_, STDERR_FILENO);
  if (standardError_ >= 0) close(standardError_);
  standardError_ = -1;
  if (kept_ < 0) return;
  std::istringstream text(contentOf(kept_));
  for (std::string line; std::getline(text, line);) lines_.push_back(line);
  close(kept_);
  kept_ = -1;
}

std::optional<std::string> ErrorCapture::take(std::string_view start, std::string_view mark) {
  finish();
  std::optional<std::string> behind;
  std::erase_if(lines_, [&](const std::string& line) {
    const std::size_t at = line.find(mark);
    if (!line.starts_with(start) || at == std::string::npos) return false;
    if (!behind) behind = line.substr(at + mark.size());
    return true;
  });
  return behind;
}

}  // namespace tembra::cli
