// Log lines of the library.
#ifndef TEMBRA_SUPPORT_LOG_H
#define TEMBRA_SUPPORT_LOG_H

#include <string_view>

#include "support/text_writer.h"

class TembraAssociation;

// Nearly every line begins with it; the lines that do not are marked [sic].
#define TEMBRA_LOG_PREFIX "libTembraAssoc:"

namespace tembra {

enum class Level : int { Progress = 0, Warning = 1, Error = 2, Detail = 3 };

/// Logs a fixed text.
void log(const TembraAssociation& assoc, Level level, const char* text);

/// Begins a line of several pieces, cut at 511 characters. Call it with the state lock held: there is one such line at
/// a time, which `logLine` ends. No piece may come from a call that logs by itself, as the router's libraries may.
TextWriter& line(std::string_view start);

/// Logs a line that was put together, and leaves it in `tempStr`.
void logLine(const TembraAssociation& assoc, Level level, const TextWriter& written);

}  // namespace tembra

#endif
