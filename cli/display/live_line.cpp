#include "cli/display/live_line.h"

#include <unistd.h>

#include <algorithm>
#include <iostream>

#include "cli/display/terminal.h"
#include "cli/words/texts.h"

namespace tembra::cli {
namespace {

constexpr char kCut[] = "...";

// Without the last words, or the end of the first one.
std::string shortened(const std::string& text, std::size_t columns) {
  if (characters(text) <= columns) return text;
  if (columns < sizeof kCut) return firstCharacters(text, columns);
  const std::string kept = firstCharacters(text, columns - (sizeof kCut - 1));
  const std::size_t blank = text[kept.size()] == ' ' ? kept.size() : kept.rfind(' ');
  return kept.substr(0, blank) + kCut;
}

std::string lastCharacters(const std::string& text, std::size_t count) {
  const std::size_t all = characters(text);
  return all <= count ? text : text.substr(firstCharacters(text, all - count).size());
}

// A line is drawn on terminals only.
std::size_t room() { return roomOfTerminal(STDOUT_FILENO).value_or(1); }

}  // namespace

std::string countdownText(const std::string& what, std::optional<int> seconds, std::size_t room) {
  if (!seconds) return shortened(what, room);
  const std::string number = std::to_string(*seconds);
  const struct {
    const char* before;
    const char* behind;
  } forms[] = {{" (at most ", " s left)"}, {" (", " s)"}};
  for (const auto& form : forms) {
    std::string text = what;
    text.append(form.before).append(number).append(form.behind);
    if (characters(text) <= room) return text;
  }
  const std::string end = " " + number + " s";
  return room > end.size() ? shortened(what, room - end.size()) + end : shortened(number, room);
}

std::string promptText(const std::string& question, std::optional<int> seconds, const std::string& typed,
                       std::size_t room) {
  constexpr std::size_t kShortestLabel = 6;
  const std::size_t half = room / 2;
  std::string end = seconds ? " (" + std::to_string(*seconds) + " s): " : ": ";
  const std::size_t wanted = characters(question) + end.size() + characters(typed);
  if (wanted > room && half < end.size() + kShortestLabel) end = ": ";  // the question rather than its seconds
  std::string head = question;
  if (wanted > room) {
    const std::size_t least = room - std::min(room, characters(typed));  // what is typed comes first, up to the half
    const std::size_t headRoom = std::max(least, half);
    head = headRoom > end.size() ? shortened(question, headRoom - end.size()) : "";
  }
  head += end;
  return head + lastCharacters(typed, room - std::min(room, characters(head)));
}

void LiveLine::showCountdown(const std::string& what, std::optional<int> seconds) {
  show(countdownText(what, seconds, room()), Cursor::kAtBeginning);
}

void LiveLine::showPrompt(const std::string& question, std::optional<int> seconds, const std::string& typed) {
  show(promptText(question, seconds, typed, room()), Cursor::kAtEnd);
}

void LiveLine::show(const std::string& text, Cursor cursor) {
  const std::size_t columns = room() + 1;
  if (text == shown_ && columns == columns_) return;
  clear();
  shown_ = text;
  cursor_ = cursor;
  columns_ = columns;
  std::cout << text << (cursor == Cursor::kAtBeginning ? "\r" : "") << std::flush;
}

void LiveLine::keep() {
  if (!shown_.empty()) std::cout << std::endl;
  shown_.clear();
}

// A terminal that has become narrower has broken the line into several.
void LiveLine::clear() {
  if (shown_.empty()) return;
  const std::size_t columns = room() + 1;
  const std::size_t rowsAbove = cursor_ == Cursor::kAtEnd && columns < columns_ ? characters(shown_) / columns : 0;
  if (rowsAbove > 0) std::cout << "\033[" << rowsAbove << 'A';
  std::cout << "\r\033[J" << std::flush;
  shown_.clear();
}

}  // namespace tembra::cli
