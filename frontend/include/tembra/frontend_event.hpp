// The events, the state and the devices of <tembra/frontend.hpp>, which includes this.
#ifndef TEMBRA_FRONTEND_EVENT_HPP
#define TEMBRA_FRONTEND_EVENT_HPP

#include <tembra/frontend.h>
#include <tembra/service.h>

#include <chrono>
#include <ctime>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace tembra {
// The libraries have a namespace of the same name inside; the linker never takes its names for these.
inline namespace frontend_1 {

using Operation = tembra_operation;
using Phase = tembra_phase;
using Outcome = tembra_outcome;
using Reason = tembra_reason;
using Radio = tembra_radio;
using Role = tembra_role;
using Server = tembra_server;
using Reset = tembra_reset;

// ---- Events: what each kind has, and nothing else ----

struct Waiting {};   ///< for a button, or for a server's answer
struct Answered {};  ///< a device answers
struct Reading {};   ///< its description is being read

/// The device is known: call Frontend::finish.
struct Found {
  int type;                  ///< the proposed type, a DevType
  std::vector<int> choices;  ///< what the device can be; the first is the proposed type
  std::string name;          ///< the proposed name
  std::string place;         ///< the proposed place
  std::size_t nameRoom;      ///< longest name in bytes
  std::size_t placeRoom;     ///< longest place in bytes
};

/// The database has the device: id, type and name are those in it.
struct Added {
  int id;
  int type;
  std::string name;
  std::string place;  ///< as sent to the HA server; the library cannot read it in the database
};

/// A device leaves.
struct Removing {
  int id;
  std::string name;
};

/// The device left.
struct Removed {
  int id;
  std::string name;
};

struct Bridge {
  std::string mac;
  std::string address;  ///< IP address, empty in a list of the database
  std::string user;     ///< empty in a discovery
};
/// Hue bridges.
struct Bridges {
  std::vector<Bridge> bridges;
};

/// Press the round button on the Hue bridge.
struct LinkButton {
  std::chrono::seconds left;
};

struct BridgeLinked {};  ///< the Hue bridge was added
struct BulbAdded {};     ///< the Hue bulb was added

/// The Nest account.
struct Account {
  bool linked;
};

/// Of a reset: steps of a second each.
struct Step {
  int done;
  int all;
};

/// The operation goes on, but something is missing.
struct Warning {
  Reason reason;
  Server server;
  int deviceId;  ///< of a device that it is about; 0: none
  std::string deviceName;
  std::string why;     ///< TEMBRA_REASON_NOT_WATCHED: what is in the way, in English; else empty
  std::string text;    ///< what is missing, in English
  std::string advice;  ///< what to do about it; empty: nothing
};

/// The process that has the connection.
struct Holder {
  int pid;
  Role role;
  std::time_t since;      ///< when it opened the connection
  std::string program;    ///< how it calls itself; empty: that is no plain text
  std::string operation;  ///< what runs there: "add", ..., "none"
  std::string phase;      ///< what is awaited there: "button", ...
};

/// The operation is over.
struct Ended {
  Outcome outcome;
  Reason reason;
  Phase phase;                       ///< in which it ended
  Server server;                     ///< that it is about
  int error;                         ///< errno where there is one; 0: none
  std::chrono::milliseconds waited;  ///< since that phase began
  int deviceId;                      ///< of a device that it is about; 0: none, or it has no id
  std::string deviceName;
  std::string text;              ///< what happened, in English
  std::string advice;            ///< what to do about it; empty: nothing
  std::optional<Holder> holder;  ///< TEMBRA_REASON_IN_USE, where the other front end says who it is
};

/// A device of the database.
struct Device {
  int id;
  int type;  ///< a DevType, 0: the database has a name that is none
  Radio radio;
  unsigned address;  ///< ZigBee short address or Z-Wave node id
  int values;        ///< value slots in the database
  std::string name;
  std::string typeName;
};
/// The devices of the database, in the order of its file.
struct Devices {
  std::vector<Device> devices;
};

/// A kind that a later version of the kit has.
struct Unknown {
  int kind;
};

struct Event {
  using Detail = std::variant<Waiting, Answered, Reading, Found, Added, Removing, Removed, Bridges, LinkButton,
                              BridgeLinked, BulbAdded, Account, Step, Warning, Ended, Devices, Unknown>;
  Operation operation;
  unsigned number;                    ///< 1, 2, 3, ... since the kit was made
  Phase phase;                        ///< what is awaited now
  Radio radio;                        ///< ZigBee, Z-Wave, or TEMBRA_RADIO_OTHER: not known
  std::chrono::milliseconds elapsed;  ///< since the operation began
  std::optional<std::chrono::milliseconds>
      endsIn;  ///< until what is awaited must have come; nothing: no limit is known
  Detail detail;
  std::string json;  ///< the event as one JSON object on one line

  /// What the event has when it is of this kind, else null.
  template <typename Kind>
  [[nodiscard]] const Kind* as() const {
    return std::get_if<Kind>(&detail);
  }
};

/// Where things are.
struct State {
  Operation operation;
  Phase phase;
  Radio radio;
  unsigned lastEvent;  ///< 0: none yet
  std::chrono::milliseconds elapsed;
  std::optional<std::chrono::milliseconds> endsIn;
  int deviceId;  ///< of the device that waits, is stored or leaves; 0: none, or not known
  std::string deviceName;
  std::optional<Found> found;  ///< while a device waits for Frontend::finish
};

// ---- From the C face ----

namespace from_c {

inline std::optional<std::chrono::milliseconds> limit(long long milliseconds) {
  if (milliseconds < 0) return std::nullopt;
  return std::chrono::milliseconds(milliseconds);
}

inline Found found(const tembra_found& c) {
  return {c.type, {c.choices, c.choices + c.choice_count}, c.name, c.place, c.name_room, c.place_room};
}

inline Bridges bridges(const tembra_event* c) {
  Bridges all;
  for (int i = 0; const tembra_bridge* bridge = tembra_event_bridge(c, i); ++i) {
    all.bridges.push_back({bridge->mac, bridge->address, bridge->user});
  }
  return all;
}

inline Warning warning(const tembra_warning& c) {
  return {static_cast<Reason>(c.reason),
          static_cast<Server>(c.server),
          c.device_id,
          c.device_name,
          c.why,
          c.text,
          c.advice};
}

inline std::optional<Holder> holder(const tembra_ended& c) {
  if (c.holder_pid == 0) return std::nullopt;
  return Holder{c.holder_pid,
                static_cast<Role>(c.holder_role),
                static_cast<std::time_t>(c.holder_since),
                c.holder_program,
                c.holder_operation,
                c.holder_phase};
}

inline Ended ended(const tembra_ended& c) {
  return {static_cast<Outcome>(c.outcome),
          static_cast<Reason>(c.reason),
          static_cast<Phase>(c.phase),
          static_cast<Server>(c.server),
          c.error,
          std::chrono::milliseconds(c.waited),
          c.device_id,
          c.device_name,
          c.text,
          c.advice,
          holder(c)};
}

inline Device device(const tembra_device& c) {
  return {c.id, c.type, static_cast<Radio>(c.radio), c.address, c.values, c.name, c.type_name};
}

inline Devices devices(const tembra_event* c) {
  Devices all;
  for (int i = 0; const tembra_device* each = tembra_event_listed(c, i); ++i) {
    all.devices.push_back(device(*each));
  }
  return all;
}

inline Event::Detail detail(int kind, const tembra_event* c) {
  const tembra_device_event* device = tembra_event_device(c);
  switch (kind) {
    case TEMBRA_EVENT_WAITING:
      return Waiting{};
    case TEMBRA_EVENT_ANSWERED:
      return Answered{};
    case TEMBRA_EVENT_READING:
      return Reading{};
    case TEMBRA_EVENT_FOUND:
      return found(*tembra_event_found(c));
    case TEMBRA_EVENT_ADDED:
      return Added{device->id, device->type, device->name, device->place};
    case TEMBRA_EVENT_REMOVING:
      return Removing{device->id, device->name};
    case TEMBRA_EVENT_REMOVED:
      return Removed{device->id, device->name};
    case TEMBRA_EVENT_BRIDGES:
      return bridges(c);
    case TEMBRA_EVENT_LINK_BUTTON:
      return LinkButton{std::chrono::seconds(tembra_event_link_button(c)->seconds_left)};
    case TEMBRA_EVENT_BRIDGE_LINKED:
      return BridgeLinked{};
    case TEMBRA_EVENT_BULB_ADDED:
      return BulbAdded{};
    case TEMBRA_EVENT_ACCOUNT:
      return Account{tembra_event_account(c)->linked != 0};
    case TEMBRA_EVENT_STEP:
      return Step{tembra_event_step(c)->done, tembra_event_step(c)->all};
    case TEMBRA_EVENT_WARNING:
      return warning(*tembra_event_warning(c));
    case TEMBRA_EVENT_ENDED:
      return ended(*tembra_event_ended(c));
    case TEMBRA_EVENT_DEVICES:
      return devices(c);
    default:
      return Unknown{kind};
  }
}

inline Event event(const tembra_event* c) {
  const auto* head = tembra_event_head(c);
  return {static_cast<Operation>(head->operation),
          head->number,
          static_cast<Phase>(head->phase),
          static_cast<Radio>(head->radio),
          std::chrono::milliseconds(head->milliseconds),
          limit(head->ends_in),
          detail(head->kind, c),
          tembra_event_json(c)};
}

}  // namespace from_c

}  // namespace frontend_1
}  // namespace tembra

#endif
