// Calls of the library that may take long, without making the user wait for them.
#ifndef TEMBRA_CLI_LIBRARY_CALL_H
#define TEMBRA_CLI_LIBRARY_CALL_H

#include <chrono>
#include <functional>

#include "cli/context.h"

namespace tembra::cli {

/// Runs the call on a thread of its own. Returns whether it has ended in time; one that has not is left to end by
/// itself. Throws Interrupted, and Failure when the system has no thread for it.
[[nodiscard]] bool runLibraryCall(const Context& context, const std::function<void()>& call,
                                  std::chrono::milliseconds longest);

}  // namespace tembra::cli

#endif
