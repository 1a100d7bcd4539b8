// Calls of the library that may take long, without making the user wait for them.
#ifndef TEMBRA_CLI_LIBRARY_CALL_H
#define TEMBRA_CLI_LIBRARY_CALL_H

#include <functional>

namespace tembra::cli {

/// Runs the call on a thread of its own and meanwhile calls `whileWaiting`, which takes its time, again and again. When
/// that throws, the call is left to end by itself. Throws Failure (kFailed) when the system has no thread for it.
void runLibraryCall(const std::function<void()>& call, const std::function<void()>& whileWaiting);

}  // namespace tembra::cli

#endif
