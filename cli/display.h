// What the program shows while it works. Which way depends on who reads: a person at a terminal, a file, a program, or
// the reader of a demonstration's timeline.
#ifndef TEMBRA_CLI_DISPLAY_H
#define TEMBRA_CLI_DISPLAY_H

#include <memory>
#include <string>

#include "event_inbox.h"
#include "options.h"

namespace tembra::cli {

class Display {
 public:
  Display() = default;
  Display(const Display&) = delete;
  Display& operator=(const Display&) = delete;
  virtual ~Display() = default;

  /// A sentence of lasting interest, such as a result. What would steer a terminal is replaced, as in the next two.
  virtual void note(const std::string& /*sentence*/) {}

  /// A command that is given to the library.
  virtual void command(const std::string& /*call*/) {}

  virtual void event(const HeardEvent& /*heard*/) {}

  /// What is being waited for, and how many seconds at most. Called several times a second.
  virtual void waiting(const std::string& /*what*/, int /*secondsLeft*/) {}

  /// Makes room for a question or a complaint.
  virtual void makeRoom() {}
};

/// Throws Interrupted (from any call that prints) when the reader of standard output has gone away.
[[nodiscard]] std::unique_ptr<Display> makeDisplay(const Options& options);

/// Prints a line on standard output at once. Throws Interrupted when nobody reads it any more.
void printLine(const std::string& line);

}  // namespace tembra::cli

#endif
