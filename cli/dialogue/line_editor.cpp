#include "cli/dialogue/line_editor.h"

namespace tembra::cli {
namespace {

constexpr char kCtrlD = '\x04';
constexpr char kEarlyCtrlD = '\0';  // what the terminal makes of it when it was typed before the keys became single
constexpr char kCtrlH = '\x08';
constexpr char kCtrlU = '\x15';
constexpr char kCtrlW = '\x17';
constexpr char kEscape = '\x1B';
constexpr char kDelete = '\x7F';

bool continuesCharacter(char byte) { return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U; }

}  // namespace

LineEditor::State LineEditor::take(char byte) {
  if (isPartOfEscape(byte)) return State::kGoesOn;
  switch (byte) {
    case '\n':
    case '\r':
      return State::kEntered;
    case kCtrlD:
    case kEarlyCtrlD:
      return text_.empty() ? State::kGivenUp : State::kGoesOn;
    case kCtrlH:
    case kDelete:
      dropCharacter();
      break;
    case kCtrlU:
      text_.clear();
      break;
    case kCtrlW:
      dropWord();
      break;
    default:
      if (static_cast<unsigned char>(byte) >= ' ') text_ += byte;
  }
  return State::kGoesOn;
}

// "ESC [ 1 ; 5 C" and "ESC O A": a sequence ends with a letter or "~".
bool LineEditor::isPartOfEscape(char byte) {
  switch (escape_) {
    case Escape::kNone:
      if (byte == kEscape) escape_ = Escape::kBegun;
      return byte == kEscape;
    case Escape::kBegun:
      escape_ = byte == '[' || byte == 'O' ? Escape::kInSequence : Escape::kNone;
      return true;
    case Escape::kInSequence:
      if (byte >= '@' && byte <= '~') escape_ = Escape::kNone;
      return true;
  }
  return false;
}

void LineEditor::dropCharacter() {
  while (!text_.empty() && continuesCharacter(text_.back())) text_.pop_back();
  if (!text_.empty()) text_.pop_back();
}

void LineEditor::dropWord() {
  while (!text_.empty() && text_.back() == ' ') text_.pop_back();
  while (!text_.empty() && text_.back() != ' ') text_.pop_back();
}

}  // namespace tembra::cli
