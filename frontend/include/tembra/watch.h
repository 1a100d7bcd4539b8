// A second process on the router: says who has the association connection, watches, and cancels.
//
//     struct tembra_holder holder = {.size = sizeof holder};
//     if (tembra_read_holder(TEMBRA_WATCH_PATH, 200, &holder) == 0) printf("%s adds a device\n", holder.program);
//
//     tembra_watch* watch = tembra_watch_open(TEMBRA_WATCH_PATH);
//     for (const char* line; (line = tembra_watch_next(watch, -1)) != NULL;) puts(line);
//     tembra_watch_close(watch);
//
// One front end at a time has the connection. When it uses the kit with the option watch_path, it serves a local stream
// socket at that path for as long: the state first, then every event, as JSON lines. docs/watch-socket.md has the
// lines.
//
// Root, the holder's user and the members of the group of the socket's folder may watch and cancel. A watcher that
// leaves 64 KiB unread is dropped.
//
// Threads: one thread at a time uses a watch. Nothing here needs a kit or a connection.
#ifndef TEMBRA_WATCH_H
#define TEMBRA_WATCH_H

#include <stddef.h>
#include <tembra/export.h>

#ifdef __cplusplus
extern "C" {
#endif

/// Where front ends of a router serve and watch, unless they agree on another path.
#define TEMBRA_WATCH_PATH "/run/tembra/front-end"

/// Behind the path of the socket: the file with the flight recorder as it was at the end of the last operation that
/// failed or timed out ("/run/tembra/front-end.failure"). Its lines are those of tembra_frontend_history. It stays when
/// the process ends, and when the connection is closed. Members of the folder's group may read it.
#define TEMBRA_FAILURE_SUFFIX ".failure"

// ---- Who has the connection ----------------------------------------------------------------------------------------

struct tembra_holder {
  size_t size;         ///< sizeof(struct tembra_holder), set by the caller
  int role;            ///< a tembra_role of <tembra/frontend.h>
  int pid;             ///< process id
  long long since;     ///< seconds since 1970: when that process opened the connection
  char program[64];    ///< how that process calls itself; cut at the end of a character
  char operation[24];  ///< what runs: "add", "hue-list", ..., "none"; the names of tembra_operation_name
  char phase[24];      ///< what is awaited: "button", "choice", ...; the names of tembra_phase_name
};

/// Asks the process that has the connection who it is. Waits for its answer.
/// @param path of the socket
/// @param milliseconds how long to wait for the answer; -1: without limit
/// @param holder its size set; all of it is filled in, or nothing
/// @return 0; EINVAL for a structure without its size; else what tembra_watch_open or tembra_watch_next say
TEMBRA_API int tembra_read_holder(const char* path, int milliseconds, struct tembra_holder* holder);

// ---- Watching ------------------------------------------------------------------------------------------------------

typedef struct tembra_watch tembra_watch;

/// Connects to the process that has the connection. Does not wait.
/// @param path of the socket
/// @return null with errno: ENOENT when no front end has the connection, or it serves no watchers there; EACCES when
/// this process may not watch, or everybody may put a socket into that folder; EAGAIN when too many are connecting;
/// EINVAL for a path that is null, not absolute or longer than 107 bytes; ENOMEM, EMFILE, ENFILE
TEMBRA_API tembra_watch* tembra_watch_open(const char* path);

/// A descriptor that is readable when the other process has said something, or is gone. Never read or close it. One
/// readable moment may bring several lines: call tembra_watch_next with 0 until it returns null.
TEMBRA_API int tembra_watch_descriptor(const tembra_watch* watch);

/// The next line: a JSON object without its newline. The first one is the state, the others are events, see
/// docs/watch-socket.md. They go on where the state is: no event is left out, none is told twice.
/// @param milliseconds how long to wait for a line; 0: not at all, -1: without limit
/// @return a text that is valid until the next call; null with errno: ETIMEDOUT when no line came; ECONNRESET when the
/// other process closed the connection, ended, or dropped this watcher; EPROTO when something else answers there, such
/// as a process whose id is not the one it says; EACCES when this process may not watch; ENOMEM
TEMBRA_API const char* tembra_watch_next(tembra_watch* watch, int milliseconds);

/// Asks the other process to cancel what runs. Its event "ended" says whether it did.
/// @return 0 when the question was sent; ECONNRESET when the other process is gone; EAGAIN when it does not read
TEMBRA_API int tembra_watch_cancel(tembra_watch* watch);

/// Asks the other process for its flight recorder, see tembra_frontend_history. Its lines come from tembra_watch_next:
/// first all that there are, then one `{"schema":1,"history":N}` with the number of the last entry, or 0. From then on
/// each new entry comes as such a line, at once, instead of the plain events.
/// @return 0 when the question was sent; ECONNRESET when the other process is gone; EAGAIN when it does not read
TEMBRA_API int tembra_watch_history(tembra_watch* watch);

TEMBRA_API void tembra_watch_close(tembra_watch* watch);  ///< null is allowed

#ifdef __cplusplus
}
#endif

#endif
