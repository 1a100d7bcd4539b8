// What the library, and the commands that it runs, say on standard error: often the only place where it tells why
// something failed. The program tells it in words of its own.
#ifndef TEMBRA_CLI_ERROR_CAPTURE_H
#define TEMBRA_CLI_ERROR_CAPTURE_H

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tembra::cli {

/// From its construction to the first `take`, what this process and its children write to standard error is kept. What
/// nobody takes is written there when it is destroyed.
class ErrorCapture {
 public:
  ErrorCapture();
  ~ErrorCapture();
  ErrorCapture(const ErrorCapture&) = delete;
  ErrorCapture& operator=(const ErrorCapture&) = delete;

  /// Takes the lines that begin with `start` and contain `mark`: what stands behind the mark in the first of them.
  std::optional<std::string> take(std::string_view start, std::string_view mark);

 private:
  void finish();

  int standardError_;  ///< where it led before, -1 when nothing is being kept
  int kept_;
  std::vector<std::string> lines_;
};

}  // namespace tembra::cli

#endif
