// How a command ends when it does not end well.
#ifndef TEMBRA_CLI_FAILURE_H
#define TEMBRA_CLI_FAILURE_H

#include <stdexcept>
#include <string>

namespace tembra::cli {

enum ExitStatus : int {
  kDone = 0,
  kFailed = 1,         ///< the operation failed
  kUsage = 2,          ///< the command line, or a confirmation that is missing
  kNoConnection = 3,   ///< the library's connection cannot be opened, or no server is there
  kInterrupted = 130,  ///< by a signal
};

/// Ends the command with this status and a sentence that says why.
class Failure : public std::runtime_error {
 public:
  /// Whether an event of the front-end kit has told programs of it already.
  enum class Told { kNot, kByEvent };

  /// What the kit calls a reason, in words for people, and by its name for programs.
  struct Reason {
    std::string name;
    std::string text;
    std::string advice;
  };

  Failure(ExitStatus status, const std::string& why, Told told = Told::kNot)
      : std::runtime_error(why), status_(status), told_(told), reason_{"", why, ""} {}
  Failure(ExitStatus status, const Reason& reason)
      : std::runtime_error(reason.text + " " + reason.advice), status_(status), told_(Told::kNot), reason_(reason) {}
  [[nodiscard]] ExitStatus status() const { return status_; }
  [[nodiscard]] Told told() const { return told_; }
  [[nodiscard]] const Reason& reason() const { return reason_; }

 private:
  ExitStatus status_;
  Told told_;
  Reason reason_;
};

}  // namespace tembra::cli

#endif
