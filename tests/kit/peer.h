// A daemon, or a stranger, on the loopback network.
#ifndef TEMBRA_TESTS_KIT_PEER_H
#define TEMBRA_TESTS_KIT_PEER_H

#include <tembra/records.h>

#include <string>
#include <type_traits>

#include "kit/stage.h"
#include "kit/trace.h"

namespace kit {

class Node;
class ZigbeeDevice;

/// A socket bound to a real address, from where the library gets datagrams.
class Peer {
 public:
  Peer(Stage& stage, const std::string& address, int port);
  ~Peer();
  Peer(const Peer&) = delete;
  Peer& operator=(const Peer&) = delete;

  /// Sends to the library and waits until it is at rest again.
  void send(const Bytes& datagram);
  void send(const Node& node);
  void send(const ZigbeeDevice& device);
  template <typename Record, typename = std::enable_if_t<std::is_trivially_copyable_v<Record>>>
  void send(const Record& record) {
    const auto* first = reinterpret_cast<const unsigned char*>(&record);
    send(Bytes(first, first + sizeof record));
  }

  /// Sends and does not wait.
  void post(const Bytes& datagram);

  /// The next datagram that really arrived here; empty when there is none.
  Bytes receive();

 private:
  Stage& stage_;
  int descriptor_;
};

}  // namespace kit

#endif
