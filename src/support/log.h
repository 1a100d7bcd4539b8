// Log lines of the library.
#ifndef TEMBRA_SUPPORT_LOG_H
#define TEMBRA_SUPPORT_LOG_H

#include <tembra/association.h>
#include <tembra/globals.h>

#include "support/text_writer.h"

// Nearly every line begins with it; the lines that do not are marked [sic].
#define TEMBRA_LOG_PREFIX "libTembraAssoc:"

namespace tembra {

enum class Level : int { kProgress = 0, kWarning = 1, kError = 2, kDetail = 3 };

/// Logs a fixed text.
void log(const TembraAssociation& assoc, Level level, const char* text);

/// A line of several pieces, cut at 511 characters. When the object ends, the line is logged and stands in `tempStr`.
/// Use it with the state lock held.
class LogLine {
 public:
  LogLine(const TembraAssociation& assoc, Level level, const char* start);
  ~LogLine();
  LogLine(const LogLine&) = delete;
  LogLine& operator=(const LogLine&) = delete;

  template <typename Piece>
  LogLine& operator<<(Piece piece) {
    line_ << piece;
    return *this;
  }

 private:
  const TembraAssociation& assoc_;
  Level level_;
  char text_[sizeof tempStr];  // not in tempStr itself, where a piece may stand, and where the Logger may write
  TextWriter line_{text_, sizeof text_};
};

}  // namespace tembra

#endif
