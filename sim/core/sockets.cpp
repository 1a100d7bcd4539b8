#include "sim/core/sockets.h"

#include <arpa/inet.h>
#include <sys/socket.h>

#include <cerrno>
#include <cstring>
#include <stdexcept>
#include <string>

namespace tembra::sim {

sockaddr_in addressOf(const Endpoint& endpoint) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(endpoint.port);
  address.sin_addr.s_addr = inet_addr(endpoint.address);
  return address;
}

Descriptor boundSocket(const Endpoint& endpoint) {
  Descriptor socket(::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
  const sockaddr_in address = addressOf(endpoint);
  if (!socket.valid() || bind(socket.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
    throw std::runtime_error("the " + std::string(endpoint.name) + " cannot be at " + endpoint.address + ":" +
                             std::to_string(endpoint.port) + ": " + std::strerror(errno));
  }
  return socket;
}

}  // namespace tembra::sim
