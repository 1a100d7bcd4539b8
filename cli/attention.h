// The one place where the program waits: for events, for lines that the user types, and for Ctrl-C.
#ifndef TEMBRA_CLI_ATTENTION_H
#define TEMBRA_CLI_ATTENTION_H

#include <chrono>
#include <functional>
#include <optional>
#include <string>

namespace tembra::cli {

/// A signal asked the program to end.
class Interrupted {};

/// From its construction on, Ctrl-C (and a hang-up or a polite kill) no longer ends the program but makes the next
/// wait throw Interrupted. Construct it before any thread starts, so that every thread leaves the signals to it.
class Attention {
 public:
  Attention();
  ~Attention();
  Attention(const Attention&) = delete;
  Attention& operator=(const Attention&) = delete;

  /// Waits until there is an event to fetch, or for this long. Throws Interrupted.
  void waitForEvent(std::chrono::milliseconds longest);

  /// Waits this long. Throws Interrupted.
  void pause(std::chrono::milliseconds time);

  /// Reads a line from standard input and meanwhile calls `onEvent` for events to fetch. Nothing at the end of input.
  /// Throws Interrupted.
  [[nodiscard]] std::optional<std::string> readLine(const std::function<void()>& onEvent);

 private:
  struct Sources {
    bool event;
    bool input;
  };
  /// Those of the sources asked for that are ready; none when the time is over.
  [[nodiscard]] Sources wait(int milliseconds, Sources asked) const;
  [[nodiscard]] std::optional<std::string> takeLine();

  int signals_;
  std::string typed_;
  bool inputEnded_ = false;
};

}  // namespace tembra::cli

#endif
