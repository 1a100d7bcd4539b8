#include "kit/stderr_capture.h"

#include <string_view>

#include "kit/trace.h"

namespace kit {

StderrCapture::StderrCapture()
    : before_(stderr), stream_(fopencookie(this, "w", {nullptr, &StderrCapture::write, nullptr, nullptr})) {
  setvbuf(stream_, nullptr, _IONBF, 0);
  stderr = stream_;
}

StderrCapture::~StderrCapture() {
  stderr = before_;
  fclose(stream_);
  if (!unfinished_.empty()) trace().add("stderr " + unfinished_ + " (no newline)");
}

// The stream's own lock lets one writer in at a time.
ssize_t StderrCapture::write(void* capture, const char* text, size_t length) {
  auto& self = *static_cast<StderrCapture*>(capture);
  std::string_view rest(text, length);
  for (auto end = rest.find('\n'); end != std::string_view::npos; end = rest.find('\n')) {
    self.unfinished_ += rest.substr(0, end);
    rest.remove_prefix(end + 1);
    trace().add("stderr " + self.unfinished_);
    self.unfinished_.clear();
  }
  self.unfinished_ += rest;
  return static_cast<ssize_t>(length);
}

}  // namespace kit
