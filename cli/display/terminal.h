// The terminal that a stream may be, and texts as they fit there.
#ifndef TEMBRA_CLI_TERMINAL_H
#define TEMBRA_CLI_TERMINAL_H

#include <string>

#include "words/fitting.h"

namespace tembra::cli {

using words::fitted;
using words::roomOfTerminal;

/// Prints a text for people on standard output at once. Throws Failure (kFailed) when it cannot be written.
void printText(const std::string& text);

/// From now on only `complain` writes to standard error. The library tells some failures there, in its own words, and
/// the events tell them as well.
void keepStandardErrorForComplaints();

/// Writes one sentence to standard error under the program's name.
void complain(const std::string& sentence);

}  // namespace tembra::cli

#endif
