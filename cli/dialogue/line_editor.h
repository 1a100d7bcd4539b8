// What a user types in one line, byte by byte as a terminal delivers it.
#ifndef TEMBRA_CLI_LINE_EDITOR_H
#define TEMBRA_CLI_LINE_EDITOR_H

#include <string>

namespace tembra::cli {

class LineEditor {
 public:
  enum class State { kGoesOn, kEntered, kGivenUp };

  /// Backspace takes a character away, Ctrl-U and Ctrl-W the line and the last word; Ctrl-D in an empty line gives up.
  /// Arrows and other keys of several bytes do nothing.
  State take(char byte);

  [[nodiscard]] const std::string& text() const { return text_; }

 private:
  enum class Escape { kNone, kBegun, kInSequence };
  bool isPartOfEscape(char byte);
  void dropCharacter();
  void dropWord();

  std::string text_;
  Escape escape_ = Escape::kNone;
};

}  // namespace tembra::cli

#endif
