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
#include <tembra/frontend_event.h>
#include <tembra/history.h>
#include <tembra/service.h>

#ifdef __cplusplus
extern "C" {
#endif

/// Version of the JSON objects, their member "schema".
#define TEMBRA_EVENT_SCHEMA 1

// ---- The kit -------------------------------------------------------------------------------------------------------

typedef struct tembra_frontend tembra_frontend;

struct tembra_options {
  size_t size;             ///< sizeof(struct tembra_options)
  int role;                ///< tembra_role
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

/// Resets radio networks: STEP each second, ENDED. With the device list REMOVED tells each device that has left it, and
/// WARNING (devices-remain) each that is still there some seconds later. No radio confirms a reset: done means that the
/// servers were told. A cancel comes too late for the radios. @param what a tembra_reset
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
// What an event holds is in <tembra/frontend_event.h>, which this header includes.

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
  int radio;               ///< tembra_radio; TEMBRA_RADIO_OTHER: not known
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
/// @param server a tembra_server
/// @return 1: yes, or the kernel does not tell; 0: no, or there is no such server
TEMBRA_API int tembra_server_listens(int server);

// ---- Names ---------------------------------------------------------------------------------------------------------

/// "add", "hue-list", ...; the names of the JSON objects. Null for an unknown number.
TEMBRA_API const char* tembra_operation_name(int operation);
TEMBRA_API const char* tembra_event_kind_name(int kind);
TEMBRA_API const char* tembra_phase_name(int phase);
TEMBRA_API const char* tembra_outcome_name(int outcome);
TEMBRA_API const char* tembra_reason_name(int reason);

/// "ZigBee", "Z-Wave", "IP", "other". Null for a number that is no tembra_radio.
TEMBRA_API const char* tembra_radio_name(int radio);

/// "ZigBee", "Z-Wave", "Hue", "Nest", "HA", "mesh". Null for TEMBRA_SERVER_NONE and a number that is none.
TEMBRA_API const char* tembra_server_name(int server);

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
