// The control socket of a running simulator: one request and one answer a connection.
#ifndef TEMBRA_SIM_CONTROL_CONTROL_SOCKET_H
#define TEMBRA_SIM_CONTROL_CONTROL_SOCKET_H

#include <map>
#include <string>

#include "platform/descriptor.h"
#include "sim/control/commands.h"
#include "sim/core/event_loop.h"

namespace tembra::sim {

/// An answer begins with one of these, then comes the text.
inline constexpr char kAnswerDone = '+';
inline constexpr char kAnswerRefused = '-';

class ControlSocket {
 public:
  /// Takes the place of a dead simulator's socket; throws one sentence when a living one has it. Only this user may
  /// connect.
  ControlSocket(EventLoop& loop, const Commands& commands, std::string path);
  ControlSocket(const ControlSocket&) = delete;
  ControlSocket& operator=(const ControlSocket&) = delete;
  ~ControlSocket();

 private:
  void accept();
  void serve(int client);

  EventLoop& loop_;
  const Commands& commands_;
  std::string path_;
  Descriptor listener_;
  std::map<int, Descriptor> clients_;
};

}  // namespace tembra::sim

#endif
