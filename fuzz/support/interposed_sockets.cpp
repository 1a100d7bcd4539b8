// Sockets between the library and the C library: on a stage there are none.
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "kit/real_libc.h"
#include "support/invariant.h"
#include "support/send_check.h"
#include "support/stage.h"

using fuzz::Fault;
using fuzz::require;
using fuzz::Stage;

extern "C" int socket(int domain, int type, int protocol) noexcept {
  KIT_REAL(socket);
  Stage* stage = Stage::current();
  if (stage == nullptr) return real(domain, type, protocol);
  require(domain == AF_INET && type == SOCK_DGRAM, "the socket is a UDP socket");
  return stage->router().strikes(Fault::kSocket) ? -1 : stage->openSocket();
}

extern "C" int setsockopt(int descriptor, int level, int option, const void* value, socklen_t length) noexcept {
  KIT_REAL(setsockopt);
  Stage* stage = Stage::current();
  if (stage == nullptr) return real(descriptor, level, option, value, length);
  require(level == SOL_SOCKET, "options are the socket's");
  if (option == SO_PRIORITY) return stage->router().strikes(Fault::kPriority) ? -1 : 0;
  require(option == SO_RCVTIMEO, "no other option is set");
  timeval wait{};
  require(length == sizeof wait, "a time-out is a timeval");
  std::memcpy(&wait, value, sizeof wait);
  require(wait.tv_usec == 0 && (wait.tv_sec == 20 || wait.tv_sec == 60 || wait.tv_sec == 180), "time-outs are known");
  return stage->router().strikes(Fault::kReceiveTimeout) ? -1 : 0;
}

extern "C" int bind(int descriptor, const sockaddr* address, socklen_t length) noexcept {
  KIT_REAL(bind);
  Stage* stage = Stage::current();
  if (stage == nullptr) return real(descriptor, address, length);
  require(descriptor != 0, "descriptor 0 means closed");
  if (stage->router().strikes(Fault::kBind)) return -1;
  if (stage->bindSocket(descriptor)) return 0;
  errno = EADDRINUSE;
  return -1;
}

extern "C" ssize_t sendto(int descriptor, const void* datagram, std::size_t length, int flags, const sockaddr* address,
                          socklen_t addressLength) {
  KIT_REAL(sendto);
  Stage* stage = Stage::current();
  if (stage == nullptr) return real(descriptor, datagram, length, flags, address, addressLength);
  fuzz::Send send{datagram, length, {}};
  require(addressLength == sizeof send.address && flags == 0, "sends have whole addresses and no flags");
  std::memcpy(&send.address, address, sizeof send.address);
  fuzz::checkSend(send);
  stage->router().sent(send);
  if (stage->router().strikes(Fault::kSend)) return -1;
  if (descriptor == stage->boundSocket()) return static_cast<ssize_t>(length);
  errno = EBADF;
  return -1;
}

extern "C" ssize_t recvfrom(int descriptor, void* buffer, std::size_t size, int flags, sockaddr* sender,
                            socklen_t* senderLength) {
  KIT_REAL(recvfrom);
  Stage* stage = Stage::current();
  if (stage == nullptr) return real(descriptor, buffer, size, flags, sender, senderLength);
  require(size == fuzz::kReceiveBufferSize && flags == 0, "receives have the whole buffer and no flags");
  sockaddr_in address{};
  require(*senderLength == sizeof address, "every receive has room for a sender");
  const ssize_t length = stage->router().receive(descriptor, static_cast<unsigned char*>(buffer), address);
  if (length >= 0 && address.sin_family == AF_INET) std::memcpy(sender, &address, sizeof address);
  return length;
}

extern "C" int close(int descriptor) {
  KIT_REAL(close);
  if (Stage* stage = Stage::current(); stage != nullptr) stage->closing(descriptor);
  return real(descriptor);
}
