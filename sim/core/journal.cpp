#include "sim/core/journal.h"

#include <iostream>

#include "platform/printable.h"
#include "words/timeline.h"

namespace tembra::sim {

Journal::Journal(bool timeline) : timeline_(timeline) {}

void Journal::said(std::string_view from, std::string_view to, std::string_view what) const {
  if (timeline_) words::say(from, to, what);
}

void Journal::found(std::string_view where, std::string_view mistake) {
  ++mistakes_;
  std::cerr << "tembra-sim: FAULT FOUND by the " << where << ": " << printable(mistake) << std::endl;
}

void Journal::trouble(std::string_view what) {
  ++troubles_;
  std::cerr << "tembra-sim: " << printable(what) << std::endl;
}

}  // namespace tembra::sim
