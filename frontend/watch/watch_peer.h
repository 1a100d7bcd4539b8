// Who is at the other end of a watcher's socket.
#ifndef TEMBRA_FRONTEND_WATCH_PEER_H
#define TEMBRA_FRONTEND_WATCH_PEER_H

#include <sys/types.h>

namespace tembra::frontend {

/// Whether the process that connected may watch and cancel: root, this process's user, or a member of the group. The
/// file's rights say the same, but somebody may have changed them.
[[nodiscard]] bool mayWatch(int socket, gid_t group);

/// The process at the other end, or the one that listened there; 0: this process cannot see it.
[[nodiscard]] pid_t processAt(int socket);

/// Whether that process still runs, as far as this process can tell. Children of a dead process may have its sockets.
[[nodiscard]] bool isAlive(int socket);

}  // namespace tembra::frontend

#endif
