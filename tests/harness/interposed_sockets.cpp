// socket, setsockopt, bind, sendto, recvfrom, shutdown and close, between the library and the C library.
#include <arpa/inet.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>

#include <cerrno>
#include <string>

#include "harness/datagram_text.h"
#include "harness/faults.h"
#include "harness/library_sockets.h"
#include "harness/real_libc.h"
#include "harness/stage.h"
#include "harness/state_text.h"
#include "harness/trace.h"

using harness::Call;

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
  const std::string failure = result < 0 ? " -> " + harness::errorName(kept.error()) : "";
  harness::trace().addWatched(harness::kWatchConnection, line + failure);
}

// The real clock's time-out; none remains none.
timeval hurried(const timeval& timeout) {
  const long long microseconds = (timeout.tv_sec * 1'000'000LL + timeout.tv_usec) / harness::stage()->haste;
  return {microseconds / 1'000'000, microseconds % 1'000'000};
}

int setTimeout(int descriptor, const timeval& timeout, const void* site) {
  const bool failed = harness::faults().strike(Call::SetTimeout, site);
  const KeptErrno kept;
  std::string line = "timeout " + std::to_string(timeout.tv_sec);
  if (timeout.tv_usec != 0) line += " and " + std::to_string(timeout.tv_usec) + " us";
  if (failed) line += " -> " + harness::errorName(kept.error());
  harness::trace().addWatched(harness::kWatchTimeouts, line);
  if (failed) return -1;
  harness::stage()->kernel.setTimeout(descriptor, timeout.tv_sec);
  return 0;
}

void traceSend(const void* data, size_t size, const sockaddr* to, ssize_t result) {
  const KeptErrno kept;
  const auto* bytes = static_cast<const unsigned char*>(data);
  harness::Datagram datagram{harness::endpointName(to), {bytes, bytes + size}, harness::stateText()};
  std::string line = "send " + harness::datagramText(datagram);
  if (result < 0) line += " -> " + harness::errorName(kept.error());
  const std::string destination = datagram.destination;
  harness::trace().addSend(std::move(datagram), line);
  std::function<void(const std::string&)> hook;
  {
    const std::lock_guard<std::mutex> lock(harness::stage()->mutex);
    hook = harness::stage()->sendHook;
  }
  if (hook) hook(destination);
}

}  // namespace

extern "C" int socket(int family, int type, int protocol) noexcept {
  HARNESS_REAL(socket);
  if (harness::stage() == nullptr) return real(family, type, protocol);
  const int descriptor =
      harness::faults().strike(Call::Socket, __builtin_return_address(0)) ? -1 : real(family, type, protocol);
  if (descriptor >= 0) harness::librarySockets().opened(descriptor);
  traceConnection("socket " + std::to_string(family) + " " + std::to_string(type) + " " + std::to_string(protocol),
                  descriptor);
  return descriptor;
}

extern "C" int setsockopt(int descriptor, int level, int option, const void* value, socklen_t length) noexcept {
  HARNESS_REAL(setsockopt);
  harness::Stage* stage = harness::stage();
  if (stage == nullptr || !harness::librarySockets().owns(descriptor)) {
    return real(descriptor, level, option, value, length);
  }
  if (level == SOL_SOCKET && option == SO_RCVTIMEO && length == sizeof(timeval)) {
    const auto& timeout = *static_cast<const timeval*>(value);
    const int result = setTimeout(descriptor, timeout, __builtin_return_address(0));
    if (result < 0 || stage->clock == harness::Clock::Virtual) return result;
    const timeval shorter = hurried(timeout);
    return real(descriptor, level, option, &shorter, length);
  }
  const bool failed = option == SO_PRIORITY && harness::faults().strike(Call::SetPriority, __builtin_return_address(0));
  const int result = failed ? -1 : real(descriptor, level, option, value, length);
  const std::string shown = length == sizeof(int) ? std::to_string(*static_cast<const int*>(value)) : "?";
  const std::string name =
      level == SOL_SOCKET && option == SO_PRIORITY ? "priority" : "option " + std::to_string(option);
  traceConnection(name + " " + shown, result);
  return result;
}

extern "C" int bind(int descriptor, const sockaddr* address, socklen_t length) noexcept {
  HARNESS_REAL(bind);
  harness::Stage* stage = harness::stage();
  if (stage == nullptr) return real(descriptor, address, length);
  const int result =
      harness::faults().strike(Call::Bind, __builtin_return_address(0)) ? -1 : real(descriptor, address, length);
  if (result == 0) {
    harness::librarySockets().bound(descriptor);
    stage->kernel.socketChanged(descriptor);
  }
  traceConnection("bind " + harness::addressText(address) + " length " + std::to_string(length), result);
  return result;
}

extern "C" ssize_t sendto(int descriptor, const void* data, size_t size, int flags, const sockaddr* to,
                          socklen_t length) {
  HARNESS_REAL(sendto);
  if (harness::stage() == nullptr) return real(descriptor, data, size, flags, to, length);
  const ssize_t result = harness::faults().strike(Call::Sendto, __builtin_return_address(0))
                             ? -1
                             : real(descriptor, data, size, flags, to, length);
  traceSend(data, size, to, result);
  return result;
}

extern "C" ssize_t recvfrom(int descriptor, void* buffer, size_t size, int flags, sockaddr* from, socklen_t* length) {
  HARNESS_REAL(recvfrom);
  harness::Stage* stage = harness::stage();
  if (stage == nullptr || stage->clock == harness::Clock::Real || !harness::librarySockets().owns(descriptor)) {
    return real(descriptor, buffer, size, flags, from, length);
  }
  if (harness::faults().strike(Call::Recvfrom, __builtin_return_address(0))) return -1;
  return stage->kernel.receive(descriptor, buffer, size, flags, from, length);
}

extern "C" int shutdown(int descriptor, int how) noexcept {
  HARNESS_REAL(shutdown);
  harness::Stage* stage = harness::stage();
  if (stage == nullptr || !harness::librarySockets().owns(descriptor)) return real(descriptor, how);
  // Traced without its result: the kernel says ENOTCONN and does it all the same.
  traceConnection("shutdown " + std::to_string(how));
  harness::librarySockets().ended(descriptor);
  stage->kernel.socketChanged(descriptor);
  const int result = real(descriptor, how);
  return harness::faults().strike(Call::Shutdown, __builtin_return_address(0)) ? -1 : result;
}

extern "C" int close(int descriptor) {
  HARNESS_REAL(close);
  harness::Stage* stage = harness::stage();
  if (stage == nullptr) return real(descriptor);
  if (!harness::librarySockets().closed(descriptor)) {
    const void* const site = __builtin_return_address(0);
    const int result = real(descriptor);
    return harness::isInLibrary(site) && harness::faults().strike(Call::Close, site) ? -1 : result;
  }
  traceConnection("close");
  stage->kernel.socketChanged(descriptor);
  const int result = real(descriptor);
  return harness::faults().strike(Call::Close, __builtin_return_address(0)) ? -1 : result;
}
