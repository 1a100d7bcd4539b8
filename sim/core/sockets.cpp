#include "sim/core/sockets.h"

#include <arpa/inet.h>
#include <sys/socket.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fstream>
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

Descriptor boundSocket(const Endpoint& endpoint) { return boundSocket(addressOf(endpoint), endpoint.name); }

Descriptor boundSocket(const sockaddr_in& address, std::string_view name) {
  Descriptor socket(::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
  if (!socket.valid() || bind(socket.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
    std::array<char, INET_ADDRSTRLEN> text{};
    inet_ntop(AF_INET, &address.sin_addr, text.data(), text.size());
    throw std::runtime_error("the " + std::string(name) + " cannot be at " + text.data() + ":" +
                             std::to_string(ntohs(address.sin_port)) + ": " + std::strerror(errno));
  }
  return socket;
}

// "  12: 04FFFF7F:22B8 ...": the address as the machine reads its bytes.
bool isTaken(const Endpoint& endpoint) {
  const sockaddr_in address = addressOf(endpoint);
  std::array<char, 24> text{};
  std::snprintf(text.data(), text.size(), ": %08X:%04X ", address.sin_addr.s_addr, unsigned{endpoint.port});
  std::ifstream table("/proc/net/udp");
  for (std::string row; std::getline(table, row);) {
    if (row.find(text.data()) != std::string::npos) return true;
  }
  return false;
}

}  // namespace tembra::sim
