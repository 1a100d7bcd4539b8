// Socket errors go to standard error, not to the log.
#ifndef TEMBRA_WIRE_DISPLAY_ERROR_H
#define TEMBRA_WIRE_DISPLAY_ERROR_H

#include <cerrno>
#include <cstdio>

#include "support/errno_text.h"

namespace tembra {

/// Prints the text of errno first and the caller's message second: the opposite of perror's order [sic].
inline void displayError(const char* message) { std::fprintf(stderr, "%s: %s\n", ErrnoText(errno).text(), message); }

}  // namespace tembra

#endif
