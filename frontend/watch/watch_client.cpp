#include "watch_client.h"

#include <poll.h>
#include <sys/socket.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <memory>
#include <new>

#include "sized.h"
#include "texts.h"
#include "watch_address.h"
#include "watch_peer.h"

namespace {

using tembra::Descriptor;
using Clock = std::chrono::steady_clock;

constexpr std::size_t kLongestHeard = 65536;

/// Milliseconds until then, for poll; at least 0.
int remaining(Clock::time_point until) {
  const auto left = std::chrono::ceil<std::chrono::milliseconds>(until - Clock::now()).count();
  return static_cast<int>(std::max<long long>(left, 0));
}

/// 0, or what keeps this process from watching there.
int checkFolder(const std::string& path) {
  struct stat status {};
  if (stat(tembra::frontend::folderOf(path).c_str(), &status) != 0) return errno == ENOTDIR ? ENOENT : errno;
  return tembra::frontend::isProtectedFolder(status) ? 0 : EACCES;
}

/// 0, or the errno of tembra_watch_open.
int connectTo(const std::string& path, Descriptor& socket) {
  sockaddr_un address{};
  if (!tembra::frontend::makeAddress(path, address)) return EINVAL;
  const int refusal = checkFolder(path);
  if (refusal != 0) return refusal;
  socket = tembra::frontend::newSocket();
  if (!socket.valid()) return errno;
  if (connect(socket.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0) {
    return tembra::frontend::isAlive(socket.get()) ? 0 : ENOENT;
  }
  const bool isNobody = errno == ECONNREFUSED || errno == EPROTOTYPE || errno == ENOTSOCK;
  return isNobody ? ENOENT : errno;
}

void fill(tembra_holder& holder, const tembra::frontend::HolderReport& report) {
  holder.role = report.holder.role;
  holder.pid = static_cast<int>(report.holder.pid);
  holder.since = report.holder.since;
  tembra::frontend::putText(holder.program, report.holder.program);
  tembra::frontend::putText(holder.operation, report.operation);
  tembra::frontend::putText(holder.phase, report.phase);
}

}  // namespace

const char* tembra_watch::next(int milliseconds) {
  const Clock::time_point until = Clock::now() + std::chrono::milliseconds(milliseconds);
  while (!takeLine()) {
    int failure = receive();
    if (failure == EAGAIN) {
      const int wait = milliseconds < 0 ? -1 : remaining(until);
      pollfd one{socket_.get(), POLLIN, 0};
      failure = wait == 0 || poll(&one, 1, wait) == 0 ? ETIMEDOUT : 0;
    }
    if (failure == 0) continue;
    errno = failure;
    return nullptr;
  }
  const int failure = checkLine();
  if (failure == 0) return line_.c_str();
  errno = failure;
  return nullptr;
}

/// What has arrived: 0, EAGAIN when nothing has, or how it ended.
int tembra_watch::receive() {
  std::array<char, 4096> bytes;
  const ssize_t length = recv(socket_.get(), bytes.data(), bytes.size(), MSG_DONTWAIT);
  if (length < 0) return errno == EAGAIN || errno == EINTR ? EAGAIN : ECONNRESET;
  if (length == 0) return ECONNRESET;
  if (received_.size() + static_cast<std::size_t>(length) > kLongestHeard) return EPROTO;
  received_.append(bytes.data(), static_cast<std::size_t>(length));
  return 0;
}

bool tembra_watch::takeLine() {
  const std::size_t end = received_.find('\n');
  if (end == std::string::npos) return false;
  line_.assign(received_, 0, end);
  received_.erase(0, end + 1);
  return true;
}

/// A line that is no text would end early for its reader. The first line must be that of the process that listens.
int tembra_watch::checkLine() {
  if (line_.find('\0') != std::string::npos) return EPROTO;
  if (knowsHolder_) return 0;
  if (!readHolderLine(line_, holder_)) return EPROTO;
  if (!holder_.error.empty()) return EACCES;
  const pid_t process = tembra::frontend::processAt(socket_.get());
  knowsHolder_ = process > 0 && holder_.holder.pid == process;
  return knowsHolder_ ? 0 : EPROTO;
}

int tembra_watch::say(std::string_view line) const {
  const ssize_t sent = send(socket_.get(), line.data(), line.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
  if (sent == static_cast<ssize_t>(line.size())) return 0;
  return errno == EAGAIN ? EAGAIN : ECONNRESET;
}

// ---- The C functions: no exception leaves them ---------------------------------------------------------------------

tembra_watch* tembra_watch_open(const char* path) {
  int failure = EINVAL;
  try {
    Descriptor socket;
    if (path != nullptr) failure = connectTo(path, socket);
    if (failure == 0) return new tembra_watch(std::move(socket));
  } catch (const std::bad_alloc&) {
    failure = ENOMEM;
  }
  errno = failure;
  return nullptr;
}

int tembra_watch_descriptor(const tembra_watch* watch) { return watch->descriptor(); }

const char* tembra_watch_next(tembra_watch* watch, int milliseconds) {
  try {
    return watch->next(milliseconds);
  } catch (const std::bad_alloc&) {
    errno = ENOMEM;
    return nullptr;
  }
}

int tembra_watch_cancel(tembra_watch* watch) { return watch->say("cancel\n"); }

int tembra_watch_history(tembra_watch* watch) { return watch->say("history\n"); }

void tembra_watch_close(tembra_watch* watch) { delete watch; }

int tembra_read_holder(const char* path, int milliseconds, struct tembra_holder* holder) {
  if (!tembra::frontend::isSized(holder)) return EINVAL;
  const std::unique_ptr<tembra_watch> watch(tembra_watch_open(path));
  if (!watch || tembra_watch_next(watch.get(), milliseconds) == nullptr) return errno;
  tembra_holder known{};
  fill(known, watch->holder());
  return tembra::frontend::handOut(holder, known) ? 0 : EINVAL;
}
