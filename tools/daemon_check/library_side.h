// The library's side of the wire: its address, its commands, and what comes back.
#ifndef TEMBRA_TOOLS_DAEMON_CHECK_LIBRARY_SIDE_H
#define TEMBRA_TOOLS_DAEMON_CHECK_LIBRARY_SIDE_H

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "platform/descriptor.h"
#include "sim/core/endpoints.h"

namespace tembra::daemon_check {

using Clock = std::chrono::steady_clock;
using Datagram = std::vector<unsigned char>;

struct Heard {
  Datagram bytes;
  std::string address;  ///< "127.255.255.254"
  std::uint16_t port;
};

class LibrarySide {
 public:
  /// Throws one sentence when the library's address cannot be had.
  LibrarySide();

  /// Throws one sentence when the system refuses to send.
  void send(const sim::Endpoint& to, const Datagram& datagram) const;
  /// The next datagram; none when there is none before `deadline`.
  [[nodiscard]] std::optional<Heard> hear(Clock::time_point deadline) const;

 private:
  Descriptor socket_;
};

}  // namespace tembra::daemon_check

#endif
