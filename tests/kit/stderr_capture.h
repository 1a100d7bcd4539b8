// What the library prints to standard error, as lines of the trace, in order with everything else.
#ifndef TEMBRA_TESTS_KIT_STDERR_CAPTURE_H
#define TEMBRA_TESTS_KIT_STDERR_CAPTURE_H

#include <cstdio>
#include <string>

namespace kit {

/// While it lives, `stderr` is a stream of ours; the descriptor 2 stays what it is.
class StderrCapture {
 public:
  StderrCapture();
  ~StderrCapture();
  StderrCapture(const StderrCapture&) = delete;
  StderrCapture& operator=(const StderrCapture&) = delete;

 private:
  static ssize_t write(void* capture, const char* text, size_t length);

  FILE* before_;
  FILE* stream_;
  std::string unfinished_;
};

}  // namespace kit

#endif
