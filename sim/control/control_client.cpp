#include "sim/control/control_client.h"

#include <sys/socket.h>
#include <sys/time.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <stdexcept>

#include "platform/descriptor.h"
#include "sim/control/control_path.h"
#include "sim/control/control_socket.h"

namespace tembra::sim {

Outcome ask(const std::string& controlPath, const std::string& request) {
  checkControlFolder(controlPath);
  const sockaddr_un address = controlAddress(controlPath);
  const Descriptor socket(::socket(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0));
  constexpr timeval patience{.tv_sec = 10, .tv_usec = 0};
  setsockopt(socket.get(), SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof patience);
  if (connect(socket.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
    throw std::runtime_error("no simulator listens at " + controlPath + ": " + std::strerror(errno));
  }
  std::array<char, 65536> answer{};
  send(socket.get(), request.data(), request.size(), MSG_NOSIGNAL);
  ssize_t length = 0;
  do length = recv(socket.get(), answer.data(), answer.size(), 0);
  while (length < 0 && errno == EINTR);
  if (length <= 0) throw std::runtime_error("the simulator at " + controlPath + " does not answer");
  return {answer.front() == kAnswerDone, {answer.data() + 1, static_cast<std::size_t>(length) - 1}};
}

}  // namespace tembra::sim
