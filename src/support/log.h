// Log lines of the library.
#ifndef TEMBRA_SUPPORT_LOG_H
#define TEMBRA_SUPPORT_LOG_H

class TembraAssociation;

// Nearly every line begins with it; the lines that do not are marked [sic].
#define TEMBRA_LOG_PREFIX "libTembraAssoc:"

namespace tembra {

enum class Level : int { Progress = 0, Warning = 1, Error = 2, Detail = 3 };

/// Logs a fixed text.
void log(const TembraAssociation& assoc, Level level, const char* text);

/// Logs a formatted line and leaves it in `tempStr`; a line is cut at 511 characters.
[[gnu::format(printf, 3, 4)]] void logLine(const TembraAssociation& assoc, Level level, const char* format, ...);

}  // namespace tembra

#endif
