// Where the control socket is.
#ifndef TEMBRA_SIM_CONTROL_CONTROL_PATH_H
#define TEMBRA_SIM_CONTROL_CONTROL_PATH_H

#include <sys/un.h>

#include <string>

namespace tembra::sim {

/// In the user's runtime directory, else in /tmp.
std::string defaultControlPath();

/// Throws one sentence for a path that is too long for a socket.
sockaddr_un controlAddress(const std::string& path);

}  // namespace tembra::sim

#endif
