// The flight recorder as it was when the last operation failed: in a file beside the socket, for those who come later.
#ifndef TEMBRA_FRONTEND_WATCH_FAILURE_FILE_H
#define TEMBRA_FRONTEND_WATCH_FAILURE_FILE_H

#include <string>

#include "history.h"

namespace tembra::frontend {

/// Writes the file anew, for the socket's own readers (0640, with the folder's group). Where the folder is no place for
/// the socket, the recorder cannot be read, or the file cannot be written whole, the last one stays.
void keepFailure(const std::string& watchPath, const History& recorder) noexcept;

}  // namespace tembra::frontend

#endif
