// The entries of a flight recorder, in words for people.
#ifndef TEMBRA_CLI_HISTORY_TEXT_H
#define TEMBRA_CLI_HISTORY_TEXT_H

#include <string>

namespace tembra::cli {

/// "add: A device answers on Z-Wave.", "called finish Siren", "log, progress: ..."; the line itself when it is no
/// entry.
[[nodiscard]] std::string entryText(const std::string& line);

/// The same behind its time, in microseconds since 1970.
[[nodiscard]] std::string timedEntryText(long long time, const std::string& line);
/// Behind the entry's own time.
[[nodiscard]] std::string timedEntryText(const std::string& line);

/// "12:00:00"
[[nodiscard]] std::string clockText(long long seconds);

}  // namespace tembra::cli

#endif
