// socket, setsockopt, bind, sendto, recvfrom, shutdown and close, between the library and the C library.
#include <arpa/inet.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>

#include <cerrno>
#include <string>

#include "kit/datagram_text.h"
#include "kit/faults.h"
#include "kit/library_sockets.h"
#include "kit/real_libc.h"
#include "kit/stage.h"
#include "kit/state_text.h"
#include "kit/trace.h"

using kit::Call;

namespace {

// errno is part of what the library sees: tracing leaves it alone.
class KeptErrno {
 public:
  KeptErrno() = default;
  ~KeptErrno() { errno = error_; }
  KeptErrno(const KeptErrno&) = delete;
  KeptErrno& operator=(const KeptErrno&) = delete;
  [[nodiscard]] int error() const { return error_; }

 private:
  int error_ = errno;
};

void traceConnection(const std::string& line, int result = 0) {
  const KeptErrno kept;
  const std::string failure = result < 0 ? " -> " + kit::errorName(kept.error()) : "";
  kit::trace().addWatched(kit::kWatchConnection, line + failure);
}

// The real clock's time-out; none remains none.
timeval hurried(const timeval& timeout) {
  const long long microseconds = (timeout.tv_sec * 1'000'000LL + timeout.tv_usec) / kit::stage()->haste;
  return {microseconds / 1'000'000, microseconds % 1'000'000};
}

int setTimeout(int descriptor, const timeval& timeout, const void* site) {
  const bool failed = kit::faults().strike(Call::kSetTimeout, site);
  const KeptErrno kept;
  std::string line = "timeout " + std::to_string(timeout.tv_sec);
  if (timeout.tv_usec != 0) line += " and " + std::to_string(timeout.tv_usec) + " us";
  if (failed) line += " -> " + kit::errorName(kept.error());
  kit::trace().addWatched(kit::kWatchTimeouts, line);
  if (failed) return -1;
  kit::stage()->kernel.setTimeout(descriptor, static_cast<long>(timeout.tv_sec) + (timeout.tv_usec != 0 ? 1 : 0));
  return 0;
}

void traceSend(const void* data, size_t size, const sockaddr* to, ssize_t result) {
  const KeptErrno kept;
  const auto* bytes = static_cast<const unsigned char*>(data);
  kit::Datagram datagram{kit::endpointName(to), {bytes, bytes + size}, kit::stateText()};
  std::string line = "send " + kit::datagramText(datagram);
  if (result < 0) line += " -> " + kit::errorName(kept.error());
  const std::string destination = datagram.destination;
  kit::trace().addSend(std::move(datagram), line);
  std::function<void(const std::string&)> hook;
  {
    const std::lock_guard<std::mutex> lock(kit::stage()->mutex);
    hook = kit::stage()->sendHook;
  }
  if (hook) hook(destination);
}

}  // namespace

extern "C" int socket(int family, int type, int protocol) noexcept {
  KIT_REAL(socket);
  if (kit::stage() == nullptr) return real(family, type, protocol);
  const int descriptor =
      kit::faults().strike(Call::kSocket, __builtin_return_address(0)) ? -1 : real(family, type, protocol);
  if (descriptor >= 0) kit::librarySockets().opened(descriptor);
  traceConnection("socket " + std::to_string(family) + " " + std::to_string(type) + " " + std::to_string(protocol),
                  descriptor);
  return descriptor;
}

extern "C" int setsockopt(int descriptor, int level, int option, const void* value, socklen_t length) noexcept {
  KIT_REAL(setsockopt);
  kit::Stage* stage = kit::stage();
  if (stage == nullptr || !kit::librarySockets().owns(descriptor)) {
    return real(descriptor, level, option, value, length);
  }
  if (level == SOL_SOCKET && option == SO_RCVTIMEO && length == sizeof(timeval)) {
    const auto& timeout = *static_cast<const timeval*>(value);
    const int result = setTimeout(descriptor, timeout, __builtin_return_address(0));
    if (result < 0 || stage->clock == kit::Clock::kVirtual) return result;
    const timeval shorter = hurried(timeout);
    return real(descriptor, level, option, &shorter, length);
  }
  const bool failed = option == SO_PRIORITY && kit::faults().strike(Call::kSetPriority, __builtin_return_address(0));
  const int result = failed ? -1 : real(descriptor, level, option, value, length);
  const std::string shown = length == sizeof(int) ? std::to_string(*static_cast<const int*>(value)) : "?";
  const std::string name =
      level == SOL_SOCKET && option == SO_PRIORITY ? "priority" : "option " + std::to_string(option);
  traceConnection(name + " " + shown, result);
  return result;
}

extern "C" int bind(int descriptor, const sockaddr* address, socklen_t length) noexcept {
  KIT_REAL(bind);
  kit::Stage* stage = kit::stage();
  if (stage == nullptr) return real(descriptor, address, length);
  const int result =
      kit::faults().strike(Call::kBind, __builtin_return_address(0)) ? -1 : real(descriptor, address, length);
  if (result == 0) {
    kit::librarySockets().bound(descriptor);
    stage->kernel.socketChanged(descriptor);
  }
  traceConnection("bind " + kit::addressText(address) + " length " + std::to_string(length), result);
  return result;
}

extern "C" ssize_t sendto(int descriptor, const void* data, size_t size, int flags, const sockaddr* to,
                          socklen_t length) {
  KIT_REAL(sendto);
  if (kit::stage() == nullptr) return real(descriptor, data, size, flags, to, length);
  const ssize_t result = kit::faults().strike(Call::kSendto, __builtin_return_address(0))
                             ? -1
                             : real(descriptor, data, size, flags, to, length);
  traceSend(data, size, to, result);
  return result;
}

extern "C" ssize_t recvfrom(int descriptor, void* buffer, size_t size, int flags, sockaddr* from, socklen_t* length) {
  KIT_REAL(recvfrom);
  kit::Stage* stage = kit::stage();
  if (stage == nullptr || stage->clock == kit::Clock::kReal || !kit::librarySockets().owns(descriptor)) {
    return real(descriptor, buffer, size, flags, from, length);
  }
  if (kit::faults().strike(Call::kRecvfrom, __builtin_return_address(0))) return -1;
  return stage->kernel.receive(descriptor, buffer, size, flags, from, length);
}

extern "C" int shutdown(int descriptor, int how) noexcept {
  KIT_REAL(shutdown);
  kit::Stage* stage = kit::stage();
  if (stage == nullptr || !kit::librarySockets().owns(descriptor)) return real(descriptor, how);
  // Traced without its result: the kernel says ENOTCONN and does it all the same.
  traceConnection("shutdown " + std::to_string(how));
  kit::librarySockets().ended(descriptor);
  stage->kernel.socketChanged(descriptor);
  const int result = real(descriptor, how);
  return kit::faults().strike(Call::kShutdown, __builtin_return_address(0)) ? -1 : result;
}

extern "C" int close(int descriptor) {
  KIT_REAL(close);
  kit::Stage* stage = kit::stage();
  if (stage == nullptr) return real(descriptor);
  if (!kit::librarySockets().closed(descriptor)) {
    const void* const site = __builtin_return_address(0);
    const int result = real(descriptor);
    return kit::isInLibrary(site) && kit::faults().strike(Call::kClose, site) ? -1 : result;
  }
  traceConnection("close");
  stage->kernel.socketChanged(descriptor);
  const int result = real(descriptor);
  return kit::faults().strike(Call::kClose, __builtin_return_address(0)) ? -1 : result;
}
