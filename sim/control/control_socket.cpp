#include "sim/control/control_socket.h"

#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <stdexcept>
#include <utility>

#include "sim/control/control_path.h"

namespace tembra::sim {
namespace {

constexpr int kBacklog = 8;
constexpr mode_t kAllButOwner = 0177;

Descriptor newSocket() { return Descriptor(socket(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC | SOCK_NONBLOCK, 0)); }

bool isSocket(const std::string& path) {
  struct stat status {};
  return lstat(path.c_str(), &status) == 0 && S_ISSOCK(status.st_mode);
}

// The socket file of a simulator that was killed stays behind.
void removeDeadSocket(const std::string& path, const sockaddr_un& address) {
  if (!isSocket(path)) return;
  const Descriptor probe = newSocket();
  if (connect(probe.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0 && errno == ECONNREFUSED) {
    unlink(path.c_str());
  }
}

Descriptor listenAt(const std::string& path) {
  makeControlFolder(path);
  checkControlFolder(path);
  const sockaddr_un address = controlAddress(path);
  removeDeadSocket(path, address);
  Descriptor listener = newSocket();
  const mode_t mask = umask(kAllButOwner);
  const bool bound =
      listener.valid() && bind(listener.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
  const int failure = errno;
  umask(mask);
  if (bound && listen(listener.get(), kBacklog) == 0) return listener;
  const bool taken = !bound && failure == EADDRINUSE;
  throw std::runtime_error("the control socket " + path + " cannot be opened: " +
                           (taken ? "another tembra-sim is running" : std::strerror(bound ? errno : failure)));
}

}  // namespace

ControlSocket::ControlSocket(EventLoop& loop, const Commands& commands, std::string path)
    : loop_(loop), commands_(commands), path_(std::move(path)), listener_(listenAt(path_)) {
  loop_.watch(listener_.get(), [this] { accept(); });
}

ControlSocket::~ControlSocket() {
  loop_.forget(listener_.get());
  for (const auto& [number, client] : clients_) loop_.forget(number);
  unlink(path_.c_str());
}

void ControlSocket::accept() {
  Descriptor client(accept4(listener_.get(), nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK));
  if (!client.valid()) return;
  const int number = client.get();
  clients_.emplace(number, std::move(client));
  loop_.watch(number, [this, number] { serve(number); });
}

void ControlSocket::serve(int client) {
  std::array<char, 1024> request{};
  const ssize_t length = recv(client, request.data(), request.size(), 0);
  if (length > 0) {
    const Outcome outcome = commands_.run({request.data(), static_cast<std::size_t>(length)});
    const std::string answer = (outcome.done ? kAnswerDone : kAnswerRefused) + outcome.text;
    send(client, answer.data(), answer.size(), MSG_NOSIGNAL);
  }
  loop_.forget(client);
  clients_.erase(client);
}

}  // namespace tembra::sim
