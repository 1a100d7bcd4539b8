#include "sim/control/control_path.h"

#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <stdexcept>

#include "sim/core/record_bytes.h"

namespace tembra::sim {
namespace {

constexpr mode_t kOthers = 0077;
constexpr mode_t kForItsOwner = 0700;

std::string ownFolder() { return "/tmp/tembra-sim-" + std::to_string(geteuid()); }

}  // namespace

std::string defaultControlPath() {
  const char* const runtime = std::getenv("XDG_RUNTIME_DIR");
  return (runtime != nullptr && *runtime != '\0' ? std::string(runtime) : ownFolder()) + "/tembra-sim.sock";
}

void makeControlFolder(const std::string& path) {
  if (path.starts_with(ownFolder() + "/")) mkdir(ownFolder().c_str(), kForItsOwner);
}

void checkControlFolder(const std::string& path) {
  const std::string folder = ownFolder();
  struct stat status {};
  if (!path.starts_with(folder + "/") || (lstat(folder.c_str(), &status) != 0 && errno == ENOENT)) return;
  if (S_ISDIR(status.st_mode) && status.st_uid == geteuid() && (status.st_mode & kOthers) == 0) return;
  throw std::runtime_error(folder + " is not a folder for you alone; choose another control socket with --control");
}

sockaddr_un controlAddress(const std::string& path) {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  if (path.empty() || path.size() >= sizeof address.sun_path) {
    throw std::runtime_error("the control path \"" + path + "\" does not fit into a socket address");
  }
  setText(address.sun_path, path);
  return address;
}

}  // namespace tembra::sim
