// The terminal that a stream may be, and texts as they fit there.
#ifndef TEMBRA_CLI_TERMINAL_H
#define TEMBRA_CLI_TERMINAL_H

#include <cstddef>
#include <optional>
#include <string>

namespace tembra::cli {

/// How many characters fit into a line of the terminal: one less than it has columns, because a full line would make
/// some terminals begin another one. Of 80 columns where it does not tell. Nothing when it is no terminal.
[[nodiscard]] std::optional<std::size_t> roomOfTerminal(int descriptor);

/// The text with lines that fit the terminal, broken at blanks. The text itself when it is no terminal.
[[nodiscard]] std::string fitted(const std::string& text, int descriptor);

/// Prints a text for people on standard output at once. Throws Failure (kFailed) when it cannot be written.
void printText(const std::string& text);

/// From now on only `complain` writes to standard error. The library tells some failures there, in its own words, and
/// the events tell them as well.
void keepStandardErrorForComplaints();

/// Writes one sentence to standard error under the program's name.
void complain(const std::string& sentence);

}  // namespace tembra::cli

#endif
