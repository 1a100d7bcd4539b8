// What only the library can tell about itself: functions beside TembraAssociation, which change nothing about it.
//
// Plain C (C11) and C++ (C++11). A structure with a member `size` wants its own sizeof there, before the call. A later
// version adds members at the end only, and writes no more than fits.
//
// Any thread may call every function at any time. The functions take the library's lock, or wait for the database, so
// do not call them from a signal handler.
#ifndef TEMBRA_SERVICE_H
#define TEMBRA_SERVICE_H

#include <stddef.h>
#include <tembra/export.h>

#ifdef __cplusplus
extern "C" {
#endif

/// Waits until the receive thread has written everything that belongs to the callback which is under way: the state,
/// `idle`, `cmdtype`, the device's type. The thread then waits for its next datagram. Call it when you handle an event
/// outside the callback, before the next operation. EVENT_CREATED of setDevType is another case: its callback runs on
/// the caller's thread, and `cmdtype` is written after it, before setDevType returns.
/// @param milliseconds the longest wait; 0 only looks
/// @return 0: everything is written, or no thread serves a connection. ETIMEDOUT: the thread was busy all the time.
///         EDEADLK: the caller is the receive thread, that is in the callback.
TEMBRA_API int tembra_settle(int milliseconds);

/// The time until the wait for a datagram ends that is under way. If an operation runs, EVENT_TIMEOUT comes then,
/// unless a datagram comes before. Linux may end a long wait late, by up to an eighth; then 0 comes for so long.
/// @return milliseconds, 0 or more; -1 when no thread waits for a datagram: the connection is closed, or a datagram, an
///         event or a time-out is being handled.
TEMBRA_API long long tembra_wait_left(void);

/// What can fail without a result that says why.
enum tembra_failure_kind {
  TEMBRA_FAILURE_SEND = 1,    ///< a datagram could not be sent
  TEMBRA_FAILURE_OPENING = 2  ///< checkAssocConnection opened no connection, or one without a receive thread
};

/// Why an opening failed.
enum tembra_opening_cause {
  TEMBRA_OPENING_IN_USE = 1,     ///< a front end, perhaps this one, has the connection open
  TEMBRA_OPENING_NO_SOCKET = 2,  ///< the system refused the socket or its address, as `error` says
  TEMBRA_OPENING_NO_THREAD = 3,  ///< the connection is open, but its receive thread did not start; ETIMEDOUT: not yet
  TEMBRA_OPENING_REPLACED = 4,   ///< another thread closed or replaced the connection meanwhile; `error` is 0
  TEMBRA_OPENING_NO_MEMORY = 5   ///< memory was short for the socket: ENOMEM
};

/// The last failure of a kind.
struct tembra_failure {
  size_t size;     ///< sizeof(struct tembra_failure), set by the caller
  unsigned count;  ///< failures of this kind since the process began: compare it before and after a call
  int server;      ///< of a failure to send: the destination, a ServerType; otherwise 0
  int cause;       ///< of an opening: a tembra_opening_cause; otherwise 0
  int error;       ///< errno of the system call that failed, 0 where none did
  char text[128];  ///< what the system calls that errno, NUL-terminated; empty for 0
};

/// Reads the last failure of a kind. When there was none, all but `size` becomes 0.
/// @param kind a tembra_failure_kind
/// @return 0; EINVAL for an unknown kind or a `size` that is too small.
TEMBRA_API int tembra_last_failure(int kind, struct tembra_failure* failure);

/// The radio of a device. ZigBee and Z-Wave have the numbers of ServerType.
enum tembra_radio {
  TEMBRA_RADIO_OTHER = 0,   ///< neither of the others
  TEMBRA_RADIO_ZIGBEE = 1,  ///< a ZigBee device, which has an address other than 0
  TEMBRA_RADIO_ZWAVE = 2,   ///< a Z-Wave node
  TEMBRA_RADIO_IP = 3       ///< no radio: the device is on the home's network, like a Hue bulb
};

/// A device of the device database. (The library does not know where a device's location stands there.)
struct tembra_device {
  int id;              ///< device id
  int type;            ///< DevType that the router's device-type library knows by `type_name`; 0 when it knows none
  int radio;           ///< a tembra_radio
  unsigned address;    ///< ZigBee short address or Z-Wave node id; 0 for other radios
  int values;          ///< number of value slots that the database has for the device
  char name[361];      ///< device name as stored, NUL-terminated
  char type_name[73];  ///< name of its type as stored, NUL-terminated
};

/// Reads the devices of the device database, in the order of the file. Waits, without limit, until no other process
/// writes it. Creates, repairs and deletes nothing. A file that is missing or empty has no devices.
/// @param devices     room for `room` devices; null when `room` is 0
/// @param deviceSize  sizeof(struct tembra_device)
/// @param room        number of devices that fit
/// @return the number of devices in the database, which may be more than `room`. -1 when there is no complete list;
///         then errno is
///         - EBADMSG: the file is damaged, or no database. What can still be read of it stands at the beginning of
///           `devices`, with zeros behind it.
///         - EISDIR: a folder stands in the file's place.
///         - EINVAL: something else that is no file does, or `deviceSize` is too small.
///         - ELOOP: another user's link stands in the file's place.
///         - EPERM: strict mode leaves the file alone, see tembra_set_strict.
///         - EDEADLK: the calling thread has the database already, because it is in the router's Logger.
///         - otherwise the errno of the system call that failed to open, lock or read the file.
TEMBRA_API long tembra_read_devices(struct tembra_device* devices, size_t deviceSize, size_t room);

/// Whether the library could open the database to look a device up: it opens the file for writing, and deletes a file
/// that it cannot open. This changes nothing (but a file that somebody deletes meanwhile may be left, empty), and waits
/// only for another look of this process.
/// @return 0, also when there is no file; else the errno of the opening. ELOOP: another user's link stands in the
///         file's place. EDEADLK: the Logger called it from a look-up.
TEMBRA_API int tembra_check_database(void);

/// What became of damaged device databases since the process began.
struct tembra_database_history {
  size_t size;        ///< sizeof(struct tembra_database_history), set by the caller
  unsigned repaired;  ///< times that a repair of the file succeeded; devices may have been lost by the damage. A repair
                      ///< that the Depot library ends with an error counts for nothing, also when it saved a part
  unsigned lost;      ///< times that the library deleted what stood in the file's place, because it did not open
};

/// @return 0; EINVAL for a `size` that is too small.
TEMBRA_API int tembra_read_database_history(struct tembra_database_history* history);

/// Switches strict mode on or off for this process. It is off, unless the environment has TEMBRA_STRICT=1 when the
/// library first asks. A program that runs with other rights than its user's (setuid) takes nothing from the
/// environment, which is the user's: only this call counts there.
///
/// In strict mode
/// - a datagram counts only when address and port are those of one of the five servers that answer, in the endpoint
///   table (<tembra/endpoints.h>). No other process can bind these while the server runs, unless the server sets
///   SO_REUSEADDR or SO_REUSEPORT. It cuts off a server that sends from another port.
/// - an answer of a radio server does not count between an add or removal that was cancelled, timed out or closed upon,
///   and the next one. It cuts off the late answer: a device that joined just before is known to the radio alone.
/// - a datagram that does not count changes nothing. The wait goes on, and the log gets at most one line a second.
/// - a device database is not opened, repaired or deleted when it, or a link to it, belongs to neither root nor the
///   effective user, or when group or others may write it. A line on standard error says so, and the operation finds no
///   database (tembra_read_devices says EPERM instead). It cuts off front ends that run as another user than the HA
///   server, unless this is root.
/// @param on 1: on; 0: off; negative: only ask. It holds for the next datagram and the next opening of the database.
/// @return 1 when strict mode was on before, else 0.
TEMBRA_API int tembra_set_strict(int on);

#ifdef __cplusplus
}
#endif

#endif
