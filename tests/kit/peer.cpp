#include "kit/peer.h"

#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "kit/library_sockets.h"
#include "kit/node.h"
#include "kit/real_libc.h"
#include "kit/zigbee_device.h"

namespace kit {
namespace {

sockaddr_in internetAddress(const std::string& address, int port) {
  sockaddr_in internet{};
  internet.sin_family = AF_INET;
  internet.sin_port = htons(static_cast<in_port_t>(port));
  inet_pton(AF_INET, address.c_str(), &internet.sin_addr);
  return internet;
}

int boundSocket(const std::string& address, int port) {
  KIT_REAL(socket);
  static auto* const bindReally = reinterpret_cast<decltype(&::bind)>(nextDefinition("__interceptor_bind", "bind"));
  const int descriptor = real(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
  const sockaddr_in internet = internetAddress(address, port);
  if (bindReally(descriptor, reinterpret_cast<const sockaddr*>(&internet), sizeof internet) != 0) {
    ADD_FAILURE() << "cannot be " << address << ":" << port << ": " << std::strerror(errno);
  }
  return descriptor;
}

}  // namespace

Peer::Peer(Stage& stage, const std::string& address, int port)
    : stage_(stage), descriptor_(boundSocket(address, port)) {}

Peer::~Peer() {
  KIT_REAL(close);
  real(descriptor_);
}

void Peer::send(const Bytes& datagram) {
  post(datagram);
  if (stage_.clock == Clock::kVirtual) stage_.kernel.settle();
}

void Peer::send(const Node& node) { send(node.bytes()); }

void Peer::send(const ZigbeeDevice& device) { send(device.bytes()); }

void Peer::post(const Bytes& datagram) {
  KIT_REAL(sendto);
  if (librarySockets().listening()) stage_.kernel.datagramPosted();
  const sockaddr_in library = internetAddress("127.255.255.4", 8888);
  const auto sent = real(descriptor_, datagram.data(), datagram.size(), 0, reinterpret_cast<const sockaddr*>(&library),
                         sizeof library);
  EXPECT_EQ(sent, static_cast<ssize_t>(datagram.size())) << std::strerror(errno);
}

// Loopback delivers at once, but not always before sendto returns.
Bytes Peer::receive() {
  constexpr int kPatienceMilliseconds = 100;
  KIT_REAL(recvfrom);
  pollfd polled{descriptor_, POLLIN, 0};
  if (poll(&polled, 1, kPatienceMilliseconds) != 1) return {};
  Bytes datagram(65536);
  const ssize_t length = real(descriptor_, datagram.data(), datagram.size(), 0, nullptr, nullptr);
  datagram.resize(length < 0 ? 0 : static_cast<std::size_t>(length));
  return datagram;
}

}  // namespace kit
