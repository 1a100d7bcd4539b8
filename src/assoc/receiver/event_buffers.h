// The event records of a receive thread. They live as long as the thread, and nothing clears them between
// datagrams. Bytes that an event does not write are those that an earlier event of the same buffer left.
#ifndef TEMBRA_ASSOC_RECEIVER_EVENT_BUFFERS_H
#define TEMBRA_ASSOC_RECEIVER_EVENT_BUFFERS_H

#include <tembra/events.h>

#include <cstring>

namespace tembra {

struct EventBuffers {
  AssocEvent a{};         // time-out; Z-Wave adding, already added, getting info, add failed; Hue results
  AssocEvent b{};         // ZigBee progress; select type, created, removed of both radios; Hue bridge list
  AssocEvent c{};         // Nest; Hue answers and ZigBee removal notices are copied over it
  DeviceReport report{};  // work area of the device events, copied whole into buffer B

  void reportIntoB() { std::memcpy(b.payload, &report, sizeof report); }
};

}  // namespace tembra

#endif
