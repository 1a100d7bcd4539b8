#include "watch_address.h"

#include <sys/socket.h>

#include <cstring>

namespace tembra::frontend {

bool makeAddress(const std::string& path, sockaddr_un& address) {
  address = {};
  address.sun_family = AF_UNIX;
  if (path.empty() || path.front() != '/' || path.size() >= sizeof address.sun_path) return false;
  std::memcpy(address.sun_path, path.c_str(), path.size() + 1);
  return std::strlen(address.sun_path) == path.size();
}

std::string folderOf(const std::string& path) {
  const std::size_t slash = path.rfind('/');
  return slash == 0 ? "/" : path.substr(0, slash);
}

bool isProtectedFolder(const struct stat& status) { return S_ISDIR(status.st_mode) && (status.st_mode & S_IWOTH) == 0; }

Descriptor newSocket() { return Descriptor(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0)); }

}  // namespace tembra::frontend
