#include "silence.h"

#include <linux/filter.h>
#include <poll.h>
#include <sys/socket.h>

namespace tembra::frontend {

Silence::Silence(int socket) : socket_(socket) {
  sock_filter takeNothing[] = {BPF_STMT(BPF_RET | BPF_K, 0)};
  const sock_fprog program = {1, takeNothing};
  setsockopt(socket_, SOL_SOCKET, SO_ATTACH_FILTER, &program, sizeof program);
}

Silence::~Silence() {
  const int none = 0;
  setsockopt(socket_, SOL_SOCKET, SO_DETACH_FILTER, &none, sizeof none);
}

bool Silence::isEmpty() const {
  pollfd waiting = {socket_, POLLIN, 0};
  poll(&waiting, 1, 0);
  return (waiting.revents & POLLIN) == 0;
}

}  // namespace tembra::frontend
