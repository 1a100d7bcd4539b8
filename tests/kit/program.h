// A program under test: started, fed, signalled and read to its end.
#ifndef TEMBRA_TESTS_KIT_PROGRAM_H
#define TEMBRA_TESTS_KIT_PROGRAM_H

#include <sys/types.h>

#include <map>
#include <string>
#include <vector>

namespace kit {

enum class Input { kNothing, kClosed };

/// Environment variables that a program sees besides ours; of our TEMBRA_ variables it sees none.
using Settings = std::map<std::string, std::string>;

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
  explicit Program(const std::vector<std::string>& command, const Settings& settings = {},
                   Input input = Input::kNothing);
  ~Program();
  Program(const Program&) = delete;
  Program& operator=(const Program&) = delete;

  void signal(int number) const;
  [[nodiscard]] bool running() const;

  /// Reads until `text` appears on standard output, after the texts that were waited for before. Returns false when the
  /// program ends without it.
  [[nodiscard]] bool says(const std::string& text);

  /// The same; the test fails when the text never comes.
  void waitFor(const std::string& text) { waitForAll({text}); }

  /// The same for several texts, in any order.
  void waitForAll(const std::vector<std::string>& texts);

  /// Closes our end of its standard output.
  void stopReading();

  /// Waits until it has ended, and until every program that writes to the same output has ended.
  Ended end();

  /// Waits for its own end only.
  int exitStatus();

  /// What it has written so far.
  [[nodiscard]] const std::string& output();
  [[nodiscard]] const std::string& errors();

 private:
  bool readMore(int milliseconds = -1);
  [[nodiscard]] std::size_t endOf(const std::string& text);

  pid_t pid_;
  int output_;
  int errors_;
  int status_ = -1;
  std::string outputSoFar_;
  std::string errorsSoFar_;
  std::size_t seen_ = 0;
};

/// What a child does between fork and the program.
[[noreturn]] void becomeProgram(const std::vector<std::string>& command, const Settings& settings);

/// Exit status as a shell tells it.
[[nodiscard]] int waitForExit(pid_t pid);

}  // namespace kit

#endif
