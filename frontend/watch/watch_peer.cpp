#include "watch_peer.h"

#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <vector>

namespace tembra::frontend {
namespace {

bool readPeer(int socket, ucred& peer) {
  socklen_t size = sizeof peer;
  return getsockopt(socket, SOL_SOCKET, SO_PEERCRED, &peer, &size) == 0 && size == sizeof peer;
}

/// The other groups of the process that connected, as the kernel knows them.
bool isInGroup(int socket, gid_t group) {
  socklen_t size = 0;
  if (getsockopt(socket, SOL_SOCKET, SO_PEERGROUPS, nullptr, &size) == 0 || errno != ERANGE) return false;
  std::vector<gid_t> groups(size / sizeof(gid_t));
  if (getsockopt(socket, SOL_SOCKET, SO_PEERGROUPS, groups.data(), &size) != 0) return false;
  return std::find(groups.begin(), groups.end(), group) != groups.end();
}

}  // namespace

bool mayWatch(int socket, gid_t group) {
  ucred peer{};
  if (!readPeer(socket, peer)) return false;
  return peer.uid == 0 || peer.uid == geteuid() || peer.gid == group || isInGroup(socket, group);
}

pid_t processAt(int socket) {
  ucred peer{};
  return readPeer(socket, peer) ? peer.pid : 0;
}

bool isAlive(int socket) {
  const pid_t process = processAt(socket);
  return process <= 0 || kill(process, 0) == 0 || errno != ESRCH;
}

}  // namespace tembra::frontend
