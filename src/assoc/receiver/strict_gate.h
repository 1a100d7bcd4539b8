// What strict mode lets through to the receive loop.
#ifndef TEMBRA_ASSOC_RECEIVER_STRICT_GATE_H
#define TEMBRA_ASSOC_RECEIVER_STRICT_GATE_H

#include <netinet/in.h>
#include <sys/time.h>
#include <tembra/association.h>

namespace tembra {

/// Keeps datagrams that do not count from the flows, from the wait that is under way, and from filling the log.
class StrictGate {
 public:
  explicit StrictGate(const TembraAssociation& assoc) : assoc_(assoc) {}

  /// What is left of a wait of so many seconds, which begins with the first question after `restart`. Zero: it is over.
  [[nodiscard]] timeval left(int seconds);
  void restart() { waitEnds_ = kNotBegun; }

  /// Whether a datagram of this server, or of nobody known, counts. The log is told when it does not.
  [[nodiscard]] bool admits(const sockaddr_in& sender, ClientType type);

 private:
  static constexpr long long kNotBegun = -1;

  void complain(const char* text);

  const TembraAssociation& assoc_;
  // In microseconds.
  long long waitEnds_ = kNotBegun;
  long long nextComplaint_ = 0;
};

}  // namespace tembra

#endif
