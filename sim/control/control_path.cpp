#include "sim/control/control_path.h"

#include <sys/socket.h>

#include <cstdlib>
#include <stdexcept>

#include "sim/core/record_bytes.h"

namespace tembra::sim {

std::string defaultControlPath() {
  const char* const runtime = std::getenv("XDG_RUNTIME_DIR");
  return std::string(runtime != nullptr && *runtime != '\0' ? runtime : "/tmp") + "/tembra-sim.sock";
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
