// The front-end kit: adds and removes devices without the traps of the plain contract (<tembra/association.h>).
//
//     tembra_frontend* kit = tembra_frontend_new(NULL);
//     tembra_frontend_add(kit);
//     for (;;) {
//       tembra_event* event = tembra_frontend_next(kit, -1);
//       const struct tembra_found* found = tembra_event_found(event);
//       const struct tembra_ended* ended = tembra_event_ended(event);
//       if (found) tembra_frontend_finish(kit, found->type, NULL, NULL);
//       if (ended) puts(ended->text);
//       ...
//     }
//
// One operation runs at a time. Each begins with a fresh wait and ends with exactly one event TEMBRA_EVENT_ENDED.
//
// Threads: any thread may call any function at any time, but nothing else during and after tembra_frontend_free. No
// function blocks, except tembra_frontend_next for the time that it is given, tembra_frontend_free, and those that say
// so. The kit calls nothing of its caller's.
//
// Structures have their size as first member, and a later version adds members behind the last one. So what the kit
// hands out may be larger than the caller's structure. What is handed in must have its size set by the caller, and may
// be smaller or larger than the kit's. Texts are UTF-8 and end with a NUL.
//
// What happened is in the flight recorder, <tembra/history.h>, which this header includes.
//
// What the kit cannot mend: stopping or tracing the process (SIGSTOP, a debugger) ends an add, because a receive that
// fails counts as a time-out. And the library exports plain names such as `idle`, `buff`, `cmdtype`, `tempStr` and
// `DevId`: a program that has a global of such a name shares it with the library.
#ifndef TEMBRA_FRONTEND_H
#define TEMBRA_FRONTEND_H

#include <stddef.h>
#include <tembra/export.h>
#include <tembra/history.h>
#include <tembra/service.h>

#ifdef __cplusplus
extern "C" {
#endif

/// Version of the JSON objects, their member "schema".
#define TEMBRA_EVENT_SCHEMA 1

// Longest texts, with their NUL.
#define TEMBRA_NAME_SIZE 361  ///< a name; the device database has room for 360 bytes
#define TEMBRA_TEXT_SIZE 256  ///< a sentence
#define TEMBRA_MAC_SIZE 30    ///< "a1:b2:c3:0a:1b:2c"

// ---- The kit -------------------------------------------------------------------------------------------------------

typedef struct tembra_frontend tembra_frontend;

struct tembra_options {
  size_t size;             ///< sizeof(struct tembra_options)
  int role;                ///< the front end's role, in ClientRole numbering (1 web server, 2 touch screen, ...); 0: 2
  int keep_open;           ///< not 0: the connection stays open between operations, so that no other front end gets in
  const char* program;     ///< how the program is called for other front ends; null: the process's own name
  const char* watch_path;  ///< where other front ends may watch and cancel, see <tembra/watch.h>; null: nowhere
};

/// Makes the kit; it opens and sends nothing. A process has one at a time, because it has one association service.
/// @param options null: all defaults
/// @return null with errno: EBUSY when the process has a kit already, EINVAL for a wrong size or role, else what was
/// short (ENOMEM, EMFILE, EAGAIN).
TEMBRA_API tembra_frontend* tembra_frontend_new(const struct tembra_options* options);

/// Cancels what runs, closes the connection and frees everything. Waits for a call of the library that is under way,
/// which may be a reset (9 seconds) or the database's lock. Null is allowed.
TEMBRA_API void tembra_frontend_free(tembra_frontend* kit);

// ---- Operations ----------------------------------------------------------------------------------------------------

/// What runs. The numbers never change.
enum tembra_operation {
  TEMBRA_OPERATION_NONE = 0,
  TEMBRA_OPERATION_ADD = 1,
  TEMBRA_OPERATION_REMOVE = 2,
  TEMBRA_OPERATION_RESET = 3,
  TEMBRA_OPERATION_HUE_DISCOVER = 4,
  TEMBRA_OPERATION_HUE_ADD_BRIDGE = 5,
  TEMBRA_OPERATION_HUE_ADD_BULB = 6,
  TEMBRA_OPERATION_HUE_REFRESH = 7,
  TEMBRA_OPERATION_HUE_REMOVE = 8,
  TEMBRA_OPERATION_HUE_LIST = 9,
  TEMBRA_OPERATION_NEST_STATUS = 10,
  TEMBRA_OPERATION_NEST_LINK = 11,
  TEMBRA_OPERATION_NEST_UNLINK = 12,
  TEMBRA_OPERATION_DEVICES = 13
};

// Each starts an operation. What can be wrong on the router (another front end has the connection, a server does not
// run) comes at once as the operation's end.
// @return 0 when started; EBUSY while an operation runs, or a call of the library of the last one is not over yet;
// EINVAL for an argument that is no such thing; ENOMEM; EMSGSIZE for a text without room; EILSEQ for a text with
// control characters or that is no UTF-8.

/// Adds the device whose button is pressed: WAITING, ANSWERED, READING, FOUND (then call tembra_frontend_finish),
/// ADDED, ENDED. A Z-Wave device that is known ends it, already-known. A ZigBee device that is known comes in as anew:
/// WARNING (already-known) before FOUND, the name that it had is proposed, and the HA server stores it with a new id in
/// place of the old one. The kit knows the device by its network address: with another address it counts as new.
TEMBRA_API int tembra_frontend_add(tembra_frontend* kit);

/// The same for a device that may be known already. Such a Z-Wave device leaves first, and a second press adds it with
/// the name that it had: WARNING (already-known), WAITING in TEMBRA_PHASE_LEAVE_BUTTON, REMOVING, REMOVED, and then as
/// above. The database does not tell the place: the caller gives it again. ENDED has the reason
/// TEMBRA_REASON_OTHER_LEFT when another device of the list left.
TEMBRA_API int tembra_frontend_add_again(tembra_frontend* kit);

/// Removes the device whose button is pressed: WAITING, REMOVING, REMOVED, ENDED.
TEMBRA_API int tembra_frontend_remove(tembra_frontend* kit);

/// Takes a device out of its radio network that joined, but was not kept: WAITING, ENDED. A device of the list leaves,
/// too, when its button is pressed: REMOVING, REMOVED, and ENDED with the reason TEMBRA_REASON_OTHER_LEFT. The ZigBee
/// server says the same of a stranger that left and of a radio that failed: both are done.
TEMBRA_API int tembra_frontend_take_out(tembra_frontend* kit);

/// Resets radio networks: STEP each second, ENDED. @param what a reset_type: 1 ZigBee, 2 Z-Wave, 3 both, 4 both, and
/// the device list is emptied. Then REMOVED tells each device that has left the list, and WARNING (devices-remain) each
/// that is still there some seconds later. No radio confirms a reset: done means that the servers were told. A cancel
/// comes too late for the radios.
TEMBRA_API int tembra_frontend_reset(tembra_frontend* kit, int what);

/// Looks for Hue bridges in the home's network: WAITING, BRIDGES, ENDED.
TEMBRA_API int tembra_frontend_hue_discover(tembra_frontend* kit);

/// Adds a Hue bridge: WAITING, LINK_BUTTON until the button was pressed, BRIDGE_LINKED, ENDED.
/// @param seconds how long somebody has to press the button, 1 to 600
TEMBRA_API int tembra_frontend_hue_add_bridge(tembra_frontend* kit, const char* mac, int seconds);

/// Adds a bulb of a bridge that was added: WAITING, BULB_ADDED, ENDED. @param bulb its name, at most 49 bytes
TEMBRA_API int tembra_frontend_hue_add_bulb(tembra_frontend* kit, const char* mac, const char* bulb);

/// Looks for changes of a bridge: WAITING, ENDED. @param text for the Hue server, at most 49 bytes; null: none
TEMBRA_API int tembra_frontend_hue_refresh(tembra_frontend* kit, const char* mac, const char* text);

/// Removes a bridge and its bulbs: WAITING, ENDED.
TEMBRA_API int tembra_frontend_hue_remove(tembra_frontend* kit, const char* mac);

/// Lists the bridges of the device database, with their users: BRIDGES, ENDED.
TEMBRA_API int tembra_frontend_hue_list(tembra_frontend* kit);

/// Whether a Nest account is linked: ACCOUNT, ENDED.
TEMBRA_API int tembra_frontend_nest_status(tembra_frontend* kit);

/// Links the account of an authorisation code (at most 247 bytes): WAITING, ACCOUNT, ENDED.
TEMBRA_API int tembra_frontend_nest_link(tembra_frontend* kit, const char* code);

/// Unlinks the account: WAITING, ACCOUNT, ENDED.
TEMBRA_API int tembra_frontend_nest_unlink(tembra_frontend* kit);

/// Lists the devices of the database: DEVICES, ENDED. It opens no connection, and ends after 5 seconds at most, failed,
/// while another process writes the database. tembra_read_devices (<tembra/service.h>) needs no kit, but blocks for as
/// long as the other process writes.
TEMBRA_API int tembra_frontend_devices(tembra_frontend* kit);

/// After FOUND: hands the device to the HA server. Keeps what the library proposed where a text is null or empty, or is
/// the proposed one. Sends nothing unless all three arguments are good.
/// @param type one of found.choices; 0: the proposed one. A device whose proposed type is 60, GenericDevice, is stored
/// with that type whatever is chosen: the choice says what its values are.
/// @return 0; ESRCH when no device waits for this; EINVAL for a type that is no choice; EMSGSIZE, EILSEQ for the texts
TEMBRA_API int tembra_frontend_finish(tembra_frontend* kit, int type, const char* name, const char* place);

/// Cancels what runs: ENDED within 100 ms, "cancelled", unless the operation ended before. The reason
/// TEMBRA_REASON_CANCELLED_LATE says that it may be done all the same: a device was leaving, the HA server had a new
/// one, the Hue or Nest server had its command, or radios were being reset.
///
/// A call of the library that is under way goes on behind ENDED: a reset for up to 9 seconds, and one that waits for
/// the database until the other process is done with it, without limit. Until then the phase of tembra_frontend_state
/// is TEMBRA_PHASE_CLOSING, and a start returns EBUSY. No event tells the end: start again every 100 ms or so.
/// @return 0; ESRCH when nothing runs
TEMBRA_API int tembra_frontend_cancel(tembra_frontend* kit);

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
  int radio;               ///< 1 ZigBee, 2 Z-Wave, 0: not known
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
  int server;     ///< the server that it is about, in ServerType numbering; 0: none
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
  int server;        ///< the server that it is about, in ServerType numbering; 0: none
  int error;         ///< errno where there is one; 0: none
  long long waited;  ///< milliseconds since that phase began
  int device_id;     ///< a device that it is about; 0: none, or it has no id
  char device_name[TEMBRA_NAME_SIZE];
  char text[TEMBRA_TEXT_SIZE];    ///< what happened, in English
  char advice[TEMBRA_TEXT_SIZE];  ///< what to do about it; empty: nothing
  int holder_pid;                 ///< IN_USE: the process that has the connection; 0: it does not say
  int holder_role;                ///< its role
  long long holder_since;         ///< seconds since 1970: when it opened the connection
  char holder_program[64];        ///< how it calls itself; empty: that is no plain text
  char holder_operation[24];      ///< what runs there: "add", ..., "none"
  char holder_phase[24];          ///< what is awaited there: "button", ...
};

typedef struct tembra_event tembra_event;

/// A descriptor that is readable while there are events, for poll, epoll and event loops. Never read or close it.
TEMBRA_API int tembra_frontend_descriptor(const tembra_frontend* kit);

/// The next event. @param milliseconds how long to wait for one; 0: not at all, -1: without limit
/// @return the event, to be released with tembra_event_free; null when none came in time, with errno ETIMEDOUT
TEMBRA_API tembra_event* tembra_frontend_next(tembra_frontend* kit, int milliseconds);
TEMBRA_API void tembra_event_free(tembra_event* event);  ///< null is allowed

// What an event holds, valid until it is freed. A detail is null when the event is of another kind, or null itself.
TEMBRA_API const struct tembra_head* tembra_event_head(const tembra_event* event);
TEMBRA_API const struct tembra_found* tembra_event_found(const tembra_event* event);
TEMBRA_API const struct tembra_device_event* tembra_event_device(const tembra_event* event);
TEMBRA_API const struct tembra_bridges* tembra_event_bridges(const tembra_event* event);
/// The bridge of this index, from 0. Null behind the last one, too.
TEMBRA_API const struct tembra_bridge* tembra_event_bridge(const tembra_event* event, int index);
TEMBRA_API const struct tembra_link_button* tembra_event_link_button(const tembra_event* event);
TEMBRA_API const struct tembra_account* tembra_event_account(const tembra_event* event);
TEMBRA_API const struct tembra_step* tembra_event_step(const tembra_event* event);
TEMBRA_API const struct tembra_warning* tembra_event_warning(const tembra_event* event);
TEMBRA_API const struct tembra_ended* tembra_event_ended(const tembra_event* event);

/// Of TEMBRA_EVENT_DEVICES: the device with this index, 0 for the first in the database's file. Null behind the last.
/// Its texts are as stored, so they may be no UTF-8.
TEMBRA_API const struct tembra_device* tembra_event_listed(const tembra_event* event, int index);

/// The event as one JSON object on one line, see the installed schema tembra-event.schema.json.
TEMBRA_API const char* tembra_event_json(const tembra_event* event);

// ---- The state -----------------------------------------------------------------------------------------------------

/// Where things are, for a page that loads anew.
struct tembra_state {
  size_t size;             ///< sizeof(struct tembra_state), set by the caller
  int operation;           ///< tembra_operation
  int phase;               ///< tembra_phase
  int radio;               ///< 1 ZigBee, 2 Z-Wave, 0: not known
  unsigned last_event;     ///< number of the last event, 0: none yet
  long long milliseconds;  ///< since the operation began
  long long ends_in;       ///< milliseconds until what is awaited must have come; -1: no limit is known
  int device_id;           ///< in TEMBRA_PHASE_CHOICE, STORING, LEAVE_BUTTON and LEAVING: the device, where the library
                           ///< knows it; else 0
  char device_name[TEMBRA_NAME_SIZE];
  struct tembra_found found;  ///< in TEMBRA_PHASE_CHOICE; else all zero
};

/// @return 0; EINVAL for a structure without its size
TEMBRA_API int tembra_frontend_state(tembra_frontend* kit, struct tembra_state* state);

/// The state as one JSON object, see tembra-state.schema.json. @return the length of the whole text, of which at most
/// `size` bytes, NUL included, are written
TEMBRA_API size_t tembra_frontend_state_json(tembra_frontend* kit, char* text, size_t size);

// ---- The router ----------------------------------------------------------------------------------------------------

/// Whether somebody listens where the library sends a server's commands. Every operation looks by itself.
/// @param server in ServerType numbering: 1 ZigBee, 2 Z-Wave, 3 Hue, 4 Nest, 5 HA
/// @return 1: yes, or the kernel does not tell; 0: no, or there is no such server
TEMBRA_API int tembra_server_listens(int server);

// ---- Names ---------------------------------------------------------------------------------------------------------

/// "add", "hue-list", ...; the names of the JSON objects. Null for an unknown number.
TEMBRA_API const char* tembra_operation_name(int operation);
TEMBRA_API const char* tembra_event_kind_name(int kind);
TEMBRA_API const char* tembra_phase_name(int phase);
TEMBRA_API const char* tembra_outcome_name(int outcome);
TEMBRA_API const char* tembra_reason_name(int reason);

/// The English sentence of a reason, and the advice, before anything is filled in; the key of a translation is
/// tembra_reason_name. docs/reasons.md says which member of an event stands for which word in braces. Null for an
/// unknown number.
TEMBRA_API const char* tembra_reason_text(int reason);
TEMBRA_API const char* tembra_reason_advice(int reason);

/// For {phase} in such a sentence: "while it described itself"; the key of a translation is tembra_phase_name. Null for
/// an unknown number.
TEMBRA_API const char* tembra_phase_text(int phase);

/// An English sentence for a call that was refused. @param error what the call returned; another errno gives the
/// system's own words; 0: empty
TEMBRA_API const char* tembra_refusal_text(int error);

/// "BinarySwitch" for 1, and back: as the router's device-type library has it, which may name a number of no type, too.
/// Null and 0 when it has none.
TEMBRA_API const char* tembra_type_name(int type);
TEMBRA_API int tembra_type_number(const char* name);

/// TEMBRA_VERSION of the kit that the program runs with, see <tembra/version.h>.
TEMBRA_API int tembra_frontend_version(void);

#ifdef __cplusplus
}
#endif

#endif
