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
  const ServedConnection& connection;
  EventBuffers& events;
  int& timeoutSeconds;
  const unsigned char (&datagram)[kReceiveBufferSize];

  /// Delivers an event. False when a new connection has replaced this one meanwhile. The flow then ends at once,
  /// because its further writes would hit the new connection's state.
  [[nodiscard]] bool tell(AssocEvent& event, AssocEventCode code, ServerType source) const {
    deliver(assoc, event, code, source);
    return !connection.isSuperseded();
  }

  /// The same for an event that leaves the source word as it is.
  [[nodiscard]] bool tell(AssocEvent& event, AssocEventCode code) const {
    deliver(assoc, event, code);
    return !connection.isSuperseded();
  }
};

// One datagram of each server; call with the state lock held.
void handleZwave(const Flow& flow);
void handleZigbee(const Flow& flow);
void handleHue(const Flow& flow);
void handleNest(const Flow& flow);

/// The web server's connection closes after every Hue or Nest answer, so that another front end can open one.
inline void closeForWebServer(const Flow& flow) {
  if (flow.connection.isSuperseded()) return;
  if (flow.assoc.clientRole == ROLE_WEB_SERVER) flow.assoc.closeAssocConnection();
}

}  // namespace tembra

#endif
