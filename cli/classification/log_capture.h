// The library's own log lines, for telling why it decided as it did.
#ifndef TEMBRA_CLI_LOG_CAPTURE_H
#define TEMBRA_CLI_LOG_CAPTURE_H

#include <string>
#include <vector>

namespace tembra::cli {

/// While it lives, the lines of this thread's library calls come here, and nowhere else.
class LogCapture {
 public:
  LogCapture();
  ~LogCapture();
  LogCapture(const LogCapture&) = delete;
  LogCapture& operator=(const LogCapture&) = delete;

  /// The lines so far, without the library's prefix.
  [[nodiscard]] std::vector<std::string> take();
};

}  // namespace tembra::cli

#endif
