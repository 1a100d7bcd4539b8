#include "sim/core/daemon.h"

#include <netinet/in.h>
#include <sys/socket.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <string>

#include "sim/core/sockets.h"

namespace tembra::sim {
namespace {

std::string withLength(std::string_view what, std::size_t length) {
  return std::string(what) + " (" + std::to_string(length) + " bytes)";
}

}  // namespace

Daemon::Daemon(const Endpoint& self, std::size_t datagramLength, Surroundings surroundings)
    : self_(self), datagramLength_(datagramLength), surroundings_(surroundings), socket_(boundSocket(self)) {
  surroundings_.loop.watch(socket_.get(), [this] { receive(); });
}

Daemon::~Daemon() { surroundings_.loop.forget(socket_.get()); }

// Everything that waits is taken before the next request of a person: whoever commands and then presses is served in
// that order.
void Daemon::receive() {
  while (receiveOne()) {
  }
}

bool Daemon::receiveOne() {
  std::array<unsigned char, 8192> buffer{};
  sockaddr_in sender{};
  socklen_t senderLength = sizeof sender;
  const ssize_t received = recvfrom(socket_.get(), buffer.data(), buffer.size(), MSG_TRUNC,
                                    reinterpret_cast<sockaddr*>(&sender), &senderLength);
  if (received < 0) return false;
  const auto length = static_cast<std::size_t>(received);
  if (length == datagramLength_) {
    handle(Bytes(buffer.data(), length));
  } else {
    found("a datagram of " + std::to_string(length) + " bytes instead of " + std::to_string(datagramLength_));
  }
  surroundings_.journal.received(sender, addressOf(self_), Bytes(buffer).first(std::min(length, buffer.size())));
  return true;
}

void Daemon::tellLibrary(Bytes datagram, std::string_view what, Sender sender) {
  const Descriptor strangers = sender == Sender::kStranger ? boundSocket(kStranger) : Descriptor();
  const std::string_view name = strangers.valid() ? kStranger.name : self_.name;
  const sockaddr_in library = addressOf(kLibrary);
  const ssize_t sent = sendto(strangers.valid() ? strangers.get() : socket_.get(), datagram.data(), datagram.size(), 0,
                              reinterpret_cast<const sockaddr*>(&library), sizeof library);
  if (sent < 0) {
    surroundings_.journal.trouble("the " + std::string(name) + " cannot send: " + std::strerror(errno));
    return;
  }
  said(name, kLibrary.name, withLength(what, datagram.size()));
  surroundings_.journal.sent(addressOf(strangers.valid() ? kStranger : self_), library, datagram);
}

}  // namespace tembra::sim
