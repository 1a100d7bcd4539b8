// What a flow (the handling of one server's datagrams) gets from the receive loop.
#ifndef TEMBRA_ASSOC_RECEIVER_FLOW_H
#define TEMBRA_ASSOC_RECEIVER_FLOW_H

#include <tembra/association.h>

#include "assoc/connection.h"
#include "assoc/event_delivery.h"
#include "assoc/receiver/event_buffers.h"

namespace tembra {

/// Size of the receive buffer. Every flow copies a fixed number of bytes out of it, whatever the datagram's length.
inline constexpr int kReceiveBufferSize = 4096;

struct Flow {
  TembraAssociation& assoc;
  const ReceiverLease& connection;
  EventBuffers& events;
  int& timeoutSeconds;
  const unsigned char (&datagram)[kReceiveBufferSize];

  /// Delivers an event. False when the connection was replaced by a new one meanwhile: the flow then ends at once,
  /// because what it would still write belongs to the new connection.
  [[nodiscard]] bool tell(AssocEvent& event, AssocEventCode code, ServerType source) const {
    deliver(assoc, event, code, source);
    return !connection.isSuperseded();
  }
};

/// One datagram of the Z-Wave server; call with the state lock held.
void handleZwave(const Flow& flow);

}  // namespace tembra

#endif
