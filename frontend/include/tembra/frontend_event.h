// What the front-end kit tells: the numbers, the events with their reasons, and the roles and servers that they name.
// <tembra/frontend.h> includes this.
#ifndef TEMBRA_FRONTEND_EVENT_H
#define TEMBRA_FRONTEND_EVENT_H

#include <stddef.h>

// Longest texts, with their NUL.
#define TEMBRA_NAME_SIZE 361  ///< a name; the device database has room for 360 bytes
#define TEMBRA_TEXT_SIZE 256  ///< a sentence
#define TEMBRA_MAC_SIZE 30    ///< "a1:b2:c3:0a:1b:2c"

#ifdef __cplusplus
extern "C" {
#endif

// ---- Roles, servers, radios ----------------------------------------------------------------------------------------
// The numbers never change. Those of radios are tembra_radio (<tembra/service.h>).

/// What kind of front end a program is.
enum tembra_role {
  TEMBRA_ROLE_NONE = 0,  ///< in the options: the touch screen; else: not known
  TEMBRA_ROLE_WEB_SERVER = 1,
  TEMBRA_ROLE_TOUCH_SCREEN = 2,
  TEMBRA_ROLE_CLOUD_AGENT = 3,
  TEMBRA_ROLE_MESH_SERVER = 4,
  TEMBRA_ROLE_FREE_1 = 5,
  TEMBRA_ROLE_FREE_2 = 6
};

/// The router's daemons.
enum tembra_server {
  TEMBRA_SERVER_NONE = 0,
  TEMBRA_SERVER_ZIGBEE = 1,
  TEMBRA_SERVER_ZWAVE = 2,
  TEMBRA_SERVER_HUE = 3,
  TEMBRA_SERVER_NEST = 4,
  TEMBRA_SERVER_HA = 5,
  TEMBRA_SERVER_MESH = 6  ///< nothing is ever sent to it
};

/// What tembra_frontend_reset resets.
enum tembra_reset {
  TEMBRA_RESET_ZIGBEE = 1,
  TEMBRA_RESET_ZWAVE = 2,
  TEMBRA_RESET_BOTH = 3,
  TEMBRA_RESET_BOTH_AND_DEVICE_LIST = 4  ///< both radios, and the device list is emptied
};

// ---- Events --------------------------------------------------------------------------------------------------------

/// The numbers never change.
enum tembra_event_kind {
  TEMBRA_EVENT_WAITING = 1,         ///< for a button, or for a server's answer
  TEMBRA_EVENT_ANSWERED = 2,        ///< a device answers
  TEMBRA_EVENT_READING = 3,         ///< its description is being read
  TEMBRA_EVENT_FOUND = 4,           ///< the device is known: tembra_event_found; call tembra_frontend_finish
  TEMBRA_EVENT_ADDED = 5,           ///< the database has the device: tembra_event_device
  TEMBRA_EVENT_REMOVING = 6,        ///< a device leaves: tembra_event_device
  TEMBRA_EVENT_REMOVED = 7,         ///< the device left, also when its radio never confirms it: tembra_event_device
  TEMBRA_EVENT_BRIDGES = 8,         ///< Hue bridges: tembra_event_bridges
  TEMBRA_EVENT_LINK_BUTTON = 9,     ///< press the round button on the Hue bridge: tembra_event_link_button
  TEMBRA_EVENT_BRIDGE_LINKED = 10,  ///< the Hue bridge was added
  TEMBRA_EVENT_BULB_ADDED = 11,     ///< the Hue bulb was added
  TEMBRA_EVENT_ACCOUNT = 12,        ///< the Nest account: tembra_event_account
  TEMBRA_EVENT_STEP = 13,           ///< of a reset: tembra_event_step
  TEMBRA_EVENT_WARNING = 14,        ///< the operation goes on, but something is missing: tembra_event_warning
  TEMBRA_EVENT_ENDED = 15,          ///< the operation is over: tembra_event_ended
  TEMBRA_EVENT_DEVICES = 16         ///< the devices of the database: tembra_event_listed
};

/// What an operation is doing. The numbers never change.
enum tembra_phase {
  TEMBRA_PHASE_NONE = 0,           ///< nothing runs
  TEMBRA_PHASE_OPENING = 1,        ///< the connection is being opened
  TEMBRA_PHASE_BUTTON = 2,         ///< somebody has to press a device's button
  TEMBRA_PHASE_IDENTITY = 3,       ///< a device answered and says which one it is
  TEMBRA_PHASE_DESCRIPTION = 4,    ///< the device describes itself
  TEMBRA_PHASE_CHOICE = 5,         ///< the user chooses type, name and place
  TEMBRA_PHASE_STORING = 6,        ///< the HA server stores the device
  TEMBRA_PHASE_LEAVING = 7,        ///< the radio confirms that the device left
  TEMBRA_PHASE_ANSWER = 8,         ///< a Hue or Nest server answers
  TEMBRA_PHASE_LINK_BUTTON = 9,    ///< somebody has to press the bridge's button
  TEMBRA_PHASE_RESETTING = 10,     ///< the radios start anew
  TEMBRA_PHASE_DATABASE = 11,      ///< the device database is read
  TEMBRA_PHASE_CLOSING = 12,       ///< the last call of the library is not over yet
  TEMBRA_PHASE_LEAVE_BUTTON = 13,  ///< somebody has to press the button of a known device, which is to leave
  TEMBRA_PHASE_EMPTYING = 14       ///< the HA server empties the device list
};

/// What every event has.
struct tembra_head {
  size_t size;
  int kind;                ///< tembra_event_kind
  int operation;           ///< tembra_operation
  unsigned number;         ///< 1, 2, 3, ... since the kit was made
  int phase;               ///< tembra_phase: what is awaited now
  int radio;               ///< tembra_radio; TEMBRA_RADIO_OTHER: not known
  long long milliseconds;  ///< since the operation began
  long long ends_in;       ///< milliseconds until what is awaited must have come; -1: no limit is known
};

/// Of TEMBRA_EVENT_FOUND.
struct tembra_found {
  size_t size;
  int type;                     ///< the proposed type, a DevType
  int choice_count;             ///< 1 at least
  int choices[52];              ///< what the device can be; the first is the proposed type
  size_t name_room;             ///< longest name in bytes, without its NUL
  size_t place_room;            ///< longest place in bytes, without its NUL
  char name[TEMBRA_NAME_SIZE];  ///< the proposed name
  char place[180];              ///< the proposed place
};

/// Of TEMBRA_EVENT_ADDED, REMOVING and REMOVED.
struct tembra_device_event {
  size_t size;
  int id;                       ///< device id
  int type;                     ///< ADDED: the DevType in the database; else 0
  char name[TEMBRA_NAME_SIZE];  ///< ADDED: the name in the database; else the name that it had there
  char place[180];              ///< ADDED: as sent to the HA server, the list of devices has none; else empty
};

/// Of TEMBRA_EVENT_BRIDGES: how many there are. tembra_event_bridge has each.
struct tembra_bridges {
  size_t size;
  int count;
};
struct tembra_bridge {
  size_t size;
  char mac[TEMBRA_MAC_SIZE];
  char address[50];  ///< IP address, empty in a list of the database
  char user[50];     ///< the bridge's user, empty in a discovery
};

/// Of TEMBRA_EVENT_LINK_BUTTON.
struct tembra_link_button {
  size_t size;
  int seconds_left;
};

/// Of TEMBRA_EVENT_ACCOUNT.
struct tembra_account {
  size_t size;
  int linked;  ///< 1 or 0
};

/// Of TEMBRA_EVENT_STEP.
struct tembra_step {
  size_t size;
  int done;  ///< steps of a second each that are done
  int all;   ///< of so many
};

/// Of TEMBRA_EVENT_WARNING.
struct tembra_warning {
  size_t size;
  int reason;     ///< tembra_reason
  int server;     ///< tembra_server that it is about
  int device_id;  ///< a device that it is about; 0: none
  char device_name[TEMBRA_NAME_SIZE];
  char why[TEMBRA_TEXT_SIZE];     ///< NOT_WATCHED: what is in the way, in English; else empty
  char text[TEMBRA_TEXT_SIZE];    ///< what is missing, in English
  char advice[TEMBRA_TEXT_SIZE];  ///< what to do about it; empty: nothing
};

/// How an operation ended. The numbers never change.
enum tembra_outcome { TEMBRA_DONE = 1, TEMBRA_CANCELLED = 2, TEMBRA_TIMED_OUT = 3, TEMBRA_FAILED = 4 };

/// Why. The numbers never change; docs/reasons.md has the texts.
enum tembra_reason {
  TEMBRA_REASON_NONE = 0,  ///< done
  TEMBRA_REASON_CANCELLED = 1,
  TEMBRA_REASON_CANCELLED_JOINED = 2,   ///< the device had joined its radio network already
  TEMBRA_REASON_CANCELLED_LATE = 3,     ///< what was asked for may be done all the same
  TEMBRA_REASON_IN_USE = 10,            ///< another front end has the connection
  TEMBRA_REASON_NO_SOCKET = 11,         ///< `error` says why
  TEMBRA_REASON_NO_THREAD = 12,         ///< `error` says why
  TEMBRA_REASON_NO_RADIO_SERVER = 13,   ///< neither radio server runs
  TEMBRA_REASON_ONE_RADIO_SERVER = 14,  ///< a warning: `server` does not run
  TEMBRA_REASON_NO_SERVER = 15,         ///< `server` does not run
  TEMBRA_REASON_NOT_SENT = 16,          ///< nothing could be sent to `server`; `error` says why
  TEMBRA_REASON_CONNECTION_LOST = 17,
  TEMBRA_REASON_NO_ANSWER = 18,     ///< `server` said nothing in time
  TEMBRA_REASON_OTHER_ANSWER = 19,  ///< `server` answered something else
  TEMBRA_REASON_NOT_WATCHED = 20,   ///< a warning: nobody can be served at the option's watch_path
  TEMBRA_REASON_NO_MEMORY = 21,     ///< this process is short of memory
  TEMBRA_REASON_NOBODY_PRESSED = 30,
  TEMBRA_REASON_DEVICE_SILENT = 31,  ///< `phase` says when
  TEMBRA_REASON_RADIO_FAILED = 32,
  TEMBRA_REASON_UNKNOWN_KIND = 33,   ///< the description came, but fits no kind of device
  TEMBRA_REASON_ALREADY_KNOWN = 34,  ///< `device_id` and `device_name` say as what
  TEMBRA_REASON_NOT_IN_LIST = 35,    ///< the device that left is not in the database
  TEMBRA_REASON_CHOICE_TOO_SLOW = 36,
  TEMBRA_REASON_NOT_STORED = 37,      ///< the HA server did not store the device
  TEMBRA_REASON_OTHER_LEFT = 38,      ///< another device than the one that was to leave: `device_id`, `device_name`
  TEMBRA_REASON_LEFT = 40,            ///< only a warning: a known device left, and was not added again
  TEMBRA_REASON_DEVICES_REMAIN = 39,  ///< the HA server did not empty the device list
  TEMBRA_REASON_DATABASE_DAMAGED = 50,
  TEMBRA_REASON_DATABASE_UNREADABLE = 51,  ///< `error` says why
  TEMBRA_REASON_LINK_BUTTON = 60,          ///< nobody pressed the bridge's button
  TEMBRA_REASON_NO_BRIDGE = 61,            ///< no such bridge in the network
  TEMBRA_REASON_UNKNOWN_BRIDGE = 62,       ///< the bridge was not added before
  TEMBRA_REASON_HUE_FAILED = 63,
  TEMBRA_REASON_NEST_REFUSED = 64
};

/// Of TEMBRA_EVENT_ENDED.
struct tembra_ended {
  size_t size;
  int outcome;       ///< tembra_outcome
  int reason;        ///< tembra_reason
  int phase;         ///< tembra_phase in which it ended
  int server;        ///< tembra_server that it is about
  int error;         ///< errno where there is one; 0: none
  long long waited;  ///< milliseconds since that phase began
  int device_id;     ///< a device that it is about; 0: none, or it has no id
  char device_name[TEMBRA_NAME_SIZE];
  char text[TEMBRA_TEXT_SIZE];    ///< what happened, in English
  char advice[TEMBRA_TEXT_SIZE];  ///< what to do about it; empty: nothing
  int holder_pid;                 ///< IN_USE: the process that has the connection; 0: it does not say
  int holder_role;                ///< its tembra_role
  long long holder_since;         ///< seconds since 1970: when it opened the connection
  char holder_program[64];        ///< how it calls itself; empty: that is no plain text
  char holder_operation[24];      ///< what runs there: "add", ..., "none"
  char holder_phase[24];          ///< what is awaited there: "button", ...
};

#ifdef __cplusplus
}
#endif

#endif
