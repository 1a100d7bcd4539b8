// The one place where the program waits: for events, for what the user types, and for Ctrl-C.
#ifndef TEMBRA_CLI_ATTENTION_H
#define TEMBRA_CLI_ATTENTION_H

#include <chrono>
#include <optional>
#include <string>

namespace tembra::cli {

/// A signal asked the program to end.
class Interrupted {};

/// From its construction on, Ctrl-C (and a hang-up or a polite kill) no longer ends the program but makes the next
/// wait throw Interrupted. Construct it before any thread starts, so that every thread leaves the signals to it.
class Attention {
 public:
  static constexpr int kNoDescriptor = -1;
  enum class Input { kIgnored, kAwaited };

  Attention();
  ~Attention();
  Attention(const Attention&) = delete;
  Attention& operator=(const Attention&) = delete;

  /// Waits until the descriptor is readable, standard input says something if it is awaited, or for this long. Throws
  /// Interrupted.
  void wait(int descriptor, Input input, std::chrono::milliseconds longest);

  /// Waits this long. Throws Interrupted.
  void pause(std::chrono::milliseconds time) { wait(kNoDescriptor, Input::kIgnored, time); }

  /// A line of standard input that has come, or its last words. Nothing: none yet, or none any more.
  [[nodiscard]] std::optional<std::string> takeLine();

  /// A byte of standard input that has come.
  [[nodiscard]] std::optional<char> takeByte();

  /// Whether standard input has ended and everything was taken.
  [[nodiscard]] bool inputIsOver() const { return inputEnded_ && typed_.empty(); }

  /// Reads a line from standard input. Nothing at the end of input. Throws Interrupted.
  [[nodiscard]] std::optional<std::string> readLine();

 private:
  void readInput();

  int signals_;
  std::string typed_;
  bool inputEnded_ = false;
};

}  // namespace tembra::cli

#endif
