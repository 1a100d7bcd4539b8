// The timeline of a demonstration: who said what to whom, one line each, from however many programs.
#ifndef TEMBRA_WORDS_TIMELINE_H
#define TEMBRA_WORDS_TIMELINE_H

#include <string_view>

namespace tembra::words {

/// Writes one line to standard output and flushes it. At a terminal it is broken at blanks where it does not fit. The
/// line begins with the seconds since this program's start, or since TEMBRA_TIMELINE_START: the machine's uptime at
/// that moment, as a script reads it from /proc/uptime. So several programs share one zero. Control characters become
/// question marks. Any thread may call it.
void say(std::string_view from, std::string_view to, std::string_view what);

}  // namespace tembra::words

#endif
