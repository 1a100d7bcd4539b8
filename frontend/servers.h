// Which of the router's servers listen, as the kernel's table of sockets tells.
#ifndef TEMBRA_FRONTEND_SERVERS_H
#define TEMBRA_FRONTEND_SERVERS_H

#include <tembra/vocabulary.h>

namespace tembra::frontend {

/// Whether somebody listens where the library sends this server's datagrams. True, too, where the kernel does not tell.
[[nodiscard]] bool listens(ServerType server);

}  // namespace tembra::frontend

#endif
