// A simulated daemon: one UDP socket at its real address, one length of datagram that it accepts.
#ifndef TEMBRA_SIM_CORE_DAEMON_H
#define TEMBRA_SIM_CORE_DAEMON_H

#include <cstddef>
#include <span>
#include <string_view>

#include "platform/descriptor.h"
#include "sim/core/endpoints.h"
#include "sim/core/surroundings.h"

namespace tembra::sim {

using Bytes = std::span<const unsigned char>;

/// Who sends a datagram to the library: the daemon itself, or somebody else in its place.
enum class Sender { kSelf, kStranger };

class Daemon {
 public:
  Daemon(const Daemon&) = delete;
  Daemon& operator=(const Daemon&) = delete;

  /// Says to the library what somebody else made up.
  void sendRaw(Bytes datagram, std::string_view what) { tellLibrary(datagram, what); }

 protected:
  /// Binds the socket and begins to receive. Throws one sentence when the address cannot be had.
  Daemon(const Endpoint& self, std::size_t datagramLength, Surroundings surroundings);
  virtual ~Daemon();

  /// A datagram of the right length arrived.
  virtual void handle(Bytes datagram) = 0;

  /// Sends a datagram to the library; `what` is for the timeline.
  void tellLibrary(Bytes datagram, std::string_view what, Sender sender = Sender::kSelf);

  void found(std::string_view mistake) { surroundings_.journal.found(self_.name, mistake); }
  void heard(std::string_view what) const { surroundings_.journal.said(kLibrary.name, self_.name, what); }
  void said(std::string_view from, std::string_view to, std::string_view what) const {
    surroundings_.journal.said(from, to, what);
  }

  const Endpoint& self() const { return self_; }
  Surroundings surroundings() const { return surroundings_; }

 private:
  void receive();
  bool receiveOne();

  const Endpoint& self_;
  std::size_t datagramLength_;
  Surroundings surroundings_;
  Descriptor socket_;
};

}  // namespace tembra::sim

#endif
