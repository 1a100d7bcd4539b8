#include "harness/stderr_capture.h"

#include "harness/trace.h"

namespace harness {

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
  for (const char* c = text; c != text + length; ++c) {
    if (*c != '\n') {
      self.unfinished_ += *c;
      continue;
    }
    trace().add("stderr " + self.unfinished_);
    self.unfinished_.clear();
  }
  return static_cast<ssize_t>(length);
}

}  // namespace harness
