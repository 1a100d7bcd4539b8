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

#include "sim/core/sockets.h"

namespace tembra::daemon_check {
LibrarySide::LibrarySide() : socket_(sim::boundSocket(sim::kLibrary)) {}

void LibrarySide::send(const sim::Endpoint& to, const Datagram& datagram) const {
  const sockaddr_in address = sim::addressOf(to);
  if (sendto(socket_.get(), datagram.data(), datagram.size(), 0, reinterpret_cast<const sockaddr*>(&address),
             sizeof address) < 0) {
    throw std::runtime_error("cannot send to the " + std::string(to.name) + ": " + std::strerror(errno));
  }
}

std::optional<Heard> LibrarySide::hear(Clock::time_point deadline) const {
  const auto wait = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now()).count();
  pollfd waiting{.fd = socket_.get(), .events = POLLIN, .revents = 0};
  if (poll(&waiting, 1, static_cast<int>(std::max<decltype(wait)>(wait, 0))) <= 0) return std::nullopt;
  std::array<unsigned char, 65536> buffer{};
  sockaddr_in sender{};
  socklen_t length = sizeof sender;
  const ssize_t received =
      recvfrom(socket_.get(), buffer.data(), buffer.size(), 0, reinterpret_cast<sockaddr*>(&sender), &length);
  if (received < 0) return std::nullopt;
  std::array<char, INET_ADDRSTRLEN> text{};
  inet_ntop(AF_INET, &sender.sin_addr, text.data(), text.size());
  return Heard{{buffer.begin(), buffer.begin() + received}, text.data(), ntohs(sender.sin_port)};
}

}  // namespace tembra::daemon_check
