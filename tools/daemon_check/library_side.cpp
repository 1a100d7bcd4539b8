#include "daemon_check/library_side.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <stdexcept>

namespace tembra::daemon_check {
namespace {

sockaddr_in addressOf(const sim::Endpoint& endpoint) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(endpoint.port);
  address.sin_addr.s_addr = inet_addr(endpoint.address);
  return address;
}

[[noreturn]] void refuse(const std::string& what) { throw std::runtime_error(what + ": " + std::strerror(errno)); }

}  // namespace

LibrarySide::LibrarySide() : socket_(socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0)) {
  const sockaddr_in self = addressOf(sim::kLibrary);
  if (!socket_.valid() || bind(socket_.get(), reinterpret_cast<const sockaddr*>(&self), sizeof self) != 0) {
    refuse("cannot take the library's place at 127.255.255.4:8888");
  }
}

void LibrarySide::send(const sim::Endpoint& to, const Datagram& datagram) const {
  const sockaddr_in address = addressOf(to);
  if (sendto(socket_.get(), datagram.data(), datagram.size(), 0, reinterpret_cast<const sockaddr*>(&address),
             sizeof address) < 0) {
    refuse("cannot send to the " + std::string(to.name));
  }
}

std::optional<Heard> LibrarySide::hear(Clock::time_point deadline) const {
  const auto wait = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now()).count();
  pollfd waiting{.fd = socket_.get(), .events = POLLIN, .revents = 0};
  if (poll(&waiting, 1, static_cast<int>(std::max<decltype(wait)>(wait, 0))) <= 0) return std::nullopt;
  std::array<unsigned char, 65536> buffer{};
  sockaddr_in sender{};
  socklen_t length = sizeof sender;
  const ssize_t received = recvfrom(socket_.get(), buffer.data(), buffer.size(), MSG_DONTWAIT,
                                    reinterpret_cast<sockaddr*>(&sender), &length);
  if (received < 0) return std::nullopt;
  std::array<char, INET_ADDRSTRLEN> text{};
  inet_ntop(AF_INET, &sender.sin_addr, text.data(), text.size());
  return Heard{{buffer.begin(), buffer.begin() + received}, text.data(), ntohs(sender.sin_port)};
}

}  // namespace tembra::daemon_check
