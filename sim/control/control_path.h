// Where the control socket is.
#ifndef TEMBRA_SIM_CONTROL_CONTROL_PATH_H
#define TEMBRA_SIM_CONTROL_CONTROL_PATH_H

#include <sys/un.h>

#include <string>

namespace tembra::sim {

/// In the user's runtime directory, else in a folder of the user's own in /tmp.
std::string defaultControlPath();

/// Makes that folder in /tmp, closed to others, where the path needs it.
void makeControlFolder(const std::string& path);

/// Throws one sentence when somebody else was faster to make the folder, or can enter it: the socket there would not be
/// ours.
void checkControlFolder(const std::string& path);

/// Throws one sentence for a path that is too long for a socket.
sockaddr_un controlAddress(const std::string& path);

}  // namespace tembra::sim

#endif
