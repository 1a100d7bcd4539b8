// The events in words: one table for front ends, machine-readable output and the documentation.
#ifndef TEMBRA_WORDS_EVENT_NAMES_H
#define TEMBRA_WORDS_EVENT_NAMES_H

#include <tembra/events.h>

#include <span>
#include <string_view>

namespace tembra::words {

/// What the payload of an event holds.
enum class Payload {
  kNone,      ///< nothing that the event defines
  kTimeout,   ///< TimeoutReport
  kProgress,  ///< DeviceReport with status and JSON text; from ZigBee only
  kChoice,    ///< DeviceReport with the type and the types to choose from
  kCreated,   ///< DeviceReport with name, location and type
  kRemoved,   ///< DeviceReport with the removed device's name and id
  kBridges,   ///< the list of Hue bridges
  kJson,      ///< a JSON text
  kNest       ///< three words of the Nest server's answer
};

/// Whether an event ends the operation, so that `idle` is 1 once its callback has returned.
enum class Ends {
  kNo,  ///< the library waits for more, or the front end has to go on
  kYes,
  kLaterFromZwave  ///< from ZigBee yes; from Z-Wave `idle` becomes 1 at once or at most 20 s later, without an event
};

struct EventRow {
  AssocEventCode code;
  std::string_view name;
  std::string_view sources;  ///< the servers it comes from
  bool tellsSource;          ///< whether the event's source word is written
  Payload payload;
  Ends ends;
  std::string_view meaning;   ///< for developers, to follow a name
  std::string_view sentence;  ///< for users
};

/// Every event, in the order of its code.
[[nodiscard]] std::span<const EventRow> eventTable();

/// The row of a code, null when there is none.
[[nodiscard]] const EventRow* findEvent(int code);

/// What the payload of this very event holds: some events carry one from ZigBee only.
[[nodiscard]] Payload payloadOf(const AssocEvent& event);

}  // namespace tembra::words

#endif
