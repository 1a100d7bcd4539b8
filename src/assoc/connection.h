// The open connection as the closing threads and the receive threads see it.
//
// A connection that is opened gets a number. A receive thread serves the number it started with and ends when that
// connection is closed, even if another one was opened meanwhile; so there are never two threads on one socket.
#ifndef TEMBRA_ASSOC_CONNECTION_H
#define TEMBRA_ASSOC_CONNECTION_H

#include <tembra/association.h>

namespace tembra {

using ConnectionNumber = unsigned;

/// The receive thread's side of a connection.
class ReceiverLease {
 public:
  /// Whether checkAssocConnection is waiting for the calling thread to start. Until `started` is called it holds the
  /// state lock on this thread's behalf.
  [[nodiscard]] static bool openerWaits();
  static void started();

  /// Takes the connection that is open now; call with the state lock held or borrowed.
  explicit ReceiverLease(TembraAssociation& assoc);

  [[nodiscard]] int descriptor() const { return descriptor_; }

  /// Whether this connection has neither been closed nor replaced; call with the state lock held. `running` plays no
  /// part: where it is 0 without a closing, the step that is under way goes on.
  [[nodiscard]] bool isOpen() const;

  /// Whether another connection was opened since; call with the state lock held.
  [[nodiscard]] bool isSuperseded() const;

  /// Around each receive. While one is under way, a closer waits before it gives the descriptor's number back.
  /// Begins with the state lock held, ends without it.
  static void beginReceive();
  static void endReceive();

 private:
  TembraAssociation& assoc_;
  ConnectionNumber number_;
  int descriptor_;
};

}  // namespace tembra

#endif
