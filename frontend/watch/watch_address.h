// Where a holder of the connection serves its watchers: what both ends ask of the path.
#ifndef TEMBRA_FRONTEND_WATCH_ADDRESS_H
#define TEMBRA_FRONTEND_WATCH_ADDRESS_H

#include <sys/stat.h>
#include <sys/un.h>

#include <string>

#include "platform/descriptor.h"

namespace tembra::frontend {

/// The path as a socket address. A relative path would change its meaning, because the library changes the process's
/// folder while it reads the database.
/// @return false: not absolute, or too long for an address (107 bytes)
[[nodiscard]] bool makeAddress(const std::string& path, sockaddr_un& address);

/// The folder of an absolute path.
[[nodiscard]] std::string folderOf(const std::string& path);

/// Whether it is a folder, no link, in which not everybody may put a socket.
[[nodiscard]] bool isProtectedFolder(const struct stat& status);

/// A stream socket that never blocks.
[[nodiscard]] Descriptor newSocket();

}  // namespace tembra::frontend

#endif
