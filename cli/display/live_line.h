// The last line of a terminal: a countdown or a question, drawn anew when something in it changes.
#ifndef TEMBRA_CLI_LIVE_LINE_H
#define TEMBRA_CLI_LIVE_LINE_H

#include <cstddef>
#include <optional>
#include <string>

namespace tembra::cli {

/// "Press the button (at most 170 s left)" in at most this many columns: shorter words, then a shorter text.
[[nodiscard]] std::string countdownText(const std::string& what, std::optional<int> seconds, std::size_t room);

/// "Name (170 s): " and the end of what was typed, in at most this many columns.
[[nodiscard]] std::string promptText(const std::string& question, std::optional<int> seconds, const std::string& typed,
                                     std::size_t room);

class LiveLine {
 public:
  /// The cursor stands at its beginning: what other programs write here does not run into it.
  void showCountdown(const std::string& what, std::optional<int> seconds);

  /// The cursor stands at its end.
  void showPrompt(const std::string& question, std::optional<int> seconds, const std::string& typed);

  /// Leaves the prompt as it is and begins a new line.
  void keep();

  void clear();

 private:
  enum class Cursor { kAtBeginning, kAtEnd };
  void show(const std::string& text, Cursor cursor);

  std::string shown_;
  Cursor cursor_ = Cursor::kAtBeginning;
  std::size_t columns_ = 0;  ///< of the terminal when it was drawn
};

}  // namespace tembra::cli

#endif
