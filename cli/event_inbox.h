// Where the library's callback leaves the events, for the program's own thread to fetch.
#ifndef TEMBRA_CLI_EVENT_INBOX_H
#define TEMBRA_CLI_EVENT_INBOX_H

#include <tembra/events.h>

#include <optional>

namespace tembra::cli {

struct HeardEvent {
  AssocEvent event;
  DevType proposedType;  ///< what classification proposed; only in events from a datagram
  bool fromDatagram;     ///< false: the library's answer to our own call
};

/// The callback to register: copies the event and returns at once.
void hearEvent(AssocEvent* event);

/// The oldest event that nobody has fetched yet.
[[nodiscard]] std::optional<HeardEvent> fetchEvent();

/// Readable while there are events to fetch.
[[nodiscard]] int eventDescriptor();

/// Marks the calling thread, while it lives, as one that calls the library: events delivered on it are answers to the
/// call.
class LibraryCall {
 public:
  LibraryCall();
  ~LibraryCall();
  LibraryCall(const LibraryCall&) = delete;
  LibraryCall& operator=(const LibraryCall&) = delete;
};

}  // namespace tembra::cli

#endif
