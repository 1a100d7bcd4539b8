#include "rig/daemons.h"

#include <sys/socket.h>
#include <tembra/endpoints.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

namespace bench {
namespace {

struct Server {
  ServerType type;
  const char* address;
};

constexpr Server kServers[] = {
    {SERVER_ZIGBEE, "127.255.255.253:8888"}, {SERVER_ZWAVE, "127.255.255.254:8888"},
    {SERVER_HUE, "127.255.255.252:8888"},    {SERVER_NEST, "127.255.255.251:8888"},
    {SERVER_HA, "127.255.255.1:9999"},
};

[[noreturn]] void fail(const std::string& what) { throw std::system_error(errno, std::generic_category(), what); }

}  // namespace

sockaddr_in addressOf(const std::string& text) {
  std::string copy = text;
  sockaddr_in address{};
  int length = sizeof address;
  if (mkaddr(&address, &length, copy.data(), nullptr) != 0) fail(text);
  return address;
}

UdpSocket::UdpSocket(const std::string& address) : descriptor_(socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0)) {
  const sockaddr_in own = addressOf(address);
  if (bind(descriptor_, reinterpret_cast<const sockaddr*>(&own), sizeof own) != 0) fail(address);
}

UdpSocket::~UdpSocket() { close(descriptor_); }

void UdpSocket::send(const std::vector<unsigned char>& bytes, const sockaddr_in& to) const {
  const auto* address = reinterpret_cast<const sockaddr*>(&to);
  if (sendto(descriptor_, bytes.data(), bytes.size(), 0, address, sizeof to) < 0) fail("sendto");
}

void UdpSocket::drain() const {
  unsigned char buffer[8192];
  while (recv(descriptor_, buffer, sizeof buffer, MSG_DONTWAIT) >= 0) {
  }
}

Daemons::Daemons() {
  for (const Server& server : kServers) sockets_.try_emplace(server.type, server.address);
}

sockaddr_in Daemons::addressOfServer(ServerType server) {
  for (const Server& row : kServers) {
    if (row.type == server) return addressOf(row.address);
  }
  return {};
}

void Daemons::drain() const {
  for (const auto& [type, socket] : sockets_) socket.drain();
}

}  // namespace bench
