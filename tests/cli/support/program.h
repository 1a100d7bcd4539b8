// A program under test: started, fed, signalled and read to its end.
#ifndef TEMBRA_TESTS_CLI_PROGRAM_H
#define TEMBRA_TESTS_CLI_PROGRAM_H

#include <sys/types.h>

#include <string>
#include <vector>

namespace tembra::test {

enum class Input { kNothing, kClosed };
enum class Clock { kReal, kFast };

/// How a program ended and what it said.
struct Ended {
  int status;  ///< exit status, or 128 and the signal
  std::string output;
  std::string errors;

  /// The last line of `errors`.
  [[nodiscard]] std::string sentence() const;
};

/// Runs without a terminal; killed when it is left alone.
class Program {
 public:
  explicit Program(const std::vector<std::string>& command, Clock clock = Clock::kReal, Input input = Input::kNothing);
  ~Program();
  Program(const Program&) = delete;
  Program& operator=(const Program&) = delete;

  void signal(int number) const;

  /// Reads until `text` appears on standard output, behind what was waited for before; fails the test when it never
  /// does.
  void waitFor(const std::string& text) { waitForAll({text}); }

  /// The same for several texts, in whatever order.
  void waitForAll(const std::vector<std::string>& texts);

  /// Closes our end of its standard output.
  void stopReading();

  /// Waits for its end, and for that of everything that writes where it wrote.
  [[nodiscard]] Ended end();

  /// Waits for its own end only.
  [[nodiscard]] int exitStatus();

 private:
  bool readMore();
  [[nodiscard]] std::size_t endOf(const std::string& text);

  pid_t pid_;
  int output_;
  int errors_;
  std::string outputSoFar_;
  std::string errorsSoFar_;
  std::size_t seen_ = 0;
};

/// The whole of tembra-assoc with these arguments.
[[nodiscard]] std::vector<std::string> assocCommand(std::vector<std::string> arguments);
[[nodiscard]] Ended runAssoc(std::vector<std::string> arguments, Clock clock = Clock::kReal,
                             Input input = Input::kNothing);

/// What a child does between fork and the program: the environment of a router.
[[noreturn]] void becomeProgram(const std::vector<std::string>& command, Clock clock);

/// Exit status as a shell tells it.
[[nodiscard]] int waitForExit(pid_t pid);

}  // namespace tembra::test

#endif
