#include "support/udp_listener.h"

#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <tembra/records.h>
#include <unistd.h>

#include <array>
#include <cstring>

namespace tembra::test {

UdpListener::UdpListener(const char* address, std::uint16_t port)
    : socket_(socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0)) {
  sockaddr_in place{};
  place.sin_family = AF_INET;
  place.sin_port = htons(port);
  EXPECT_EQ(inet_pton(AF_INET, address, &place.sin_addr), 1);
  EXPECT_EQ(bind(socket_, reinterpret_cast<const sockaddr*>(&place), sizeof place), 0) << address;
}

UdpListener::~UdpListener() { close(socket_); }

std::optional<std::string> UdpListener::take() const {
  std::array<char, 8192> bytes{};
  const auto size = recv(socket_, bytes.data(), bytes.size(), 0);
  if (size < 0) return std::nullopt;
  return std::string(bytes.data(), static_cast<std::size_t>(size));
}

ZigbeeListener::ZigbeeListener() : server_("127.255.255.253", 8888) {}

std::string ZigbeeListener::takeCommand() const {
  const auto datagram = server_.take();
  if (!datagram) return "";
  EXPECT_EQ(datagram->size(), sizeof(ZigbeeCommand));
  ZigbeeCommand command{};
  std::memcpy(&command, datagram->data(), std::min(datagram->size(), sizeof command));
  return std::string(command.command) + "/" + command.argument;
}

}  // namespace tembra::test
