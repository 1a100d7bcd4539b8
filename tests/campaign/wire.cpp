#include "campaign/wire.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>

#include <cerrno>

#include "campaign/account.h"
#include "kit/real_libc.h"

namespace campaign {
namespace {

std::string addressText(const sockaddr_in& address) {
  char text[INET_ADDRSTRLEN] = {};
  inet_ntop(AF_INET, &address.sin_addr, text, sizeof text);
  return std::string(text).append(":").append(std::to_string(ntohs(address.sin_port)));
}

std::string ownAddress(int socket) {
  sockaddr_in address{};
  socklen_t length = sizeof address;
  getsockname(socket, reinterpret_cast<sockaddr*>(&address), &length);
  return addressText(address);
}

}  // namespace

void Wire::add(Datagram datagram) {
  const std::lock_guard lock(mutex_);
  all_.push_back(std::move(datagram));
}

std::vector<Datagram> Wire::since(std::size_t first) {
  const std::lock_guard lock(mutex_);
  return {all_.begin() + static_cast<std::ptrdiff_t>(first), all_.end()};
}

std::size_t Wire::count() {
  const std::lock_guard lock(mutex_);
  return all_.size();
}

// Never destroyed: threads may send while the process ends.
Wire& wire() {
  static Wire& one = *new Wire;
  return one;
}

}  // namespace campaign

extern "C" ssize_t sendto(int socket, const void* data, size_t size, int flags, const sockaddr* to, socklen_t length) {
  KIT_REAL(sendto);
  campaign::WorldClock* const world = campaign::worldClock();
  if (world == nullptr) return real(socket, data, size, flags, to, length);
  const auto* bytes = static_cast<const unsigned char*>(data);
  campaign::Datagram datagram{world->now(),
                              campaign::ownAddress(socket),
                              campaign::addressText(*reinterpret_cast<const sockaddr_in*>(to)),
                              {bytes, bytes + size}};
  const ssize_t sent = real(socket, data, size, flags, to, length);
  const int error = errno;
  if (sent >= 0) {
    campaign::accountFor(datagram);
    campaign::wire().add(std::move(datagram));
  }
  errno = error;
  return sent;
}
