// The front-end kit's flight recorder: what the process's kit did last, also after an operation failed or the kit was
// freed.
//
// <tembra/frontend.h> includes this header. No kit is needed.
#ifndef TEMBRA_HISTORY_H
#define TEMBRA_HISTORY_H

#include <stddef.h>
#include <tembra/export.h>

#ifdef __cplusplus
extern "C" {
#endif

/// Room for all of the flight recorder's text, its NUL included.
#define TEMBRA_HISTORY_SIZE 65536

/// What the process's kit did last: calls, events with their reasons, and log lines, also after an operation failed or
/// the kit was freed. It needs 64 KiB in all, from the start; recording allocates nothing, and the oldest entry goes
/// first.
///
///     static char text[TEMBRA_HISTORY_SIZE];
///     tembra_frontend_history(text, sizeof text);
///     fputs(text, stderr);
///
/// Each entry is one JSON object on one line, see tembra-history.schema.json:
///
///     {"schema":1,"entry":7,"monotonic_us":81000250,"wall_us":1790000000000250,"call":"add"}
///     {"schema":1,"entry":8,"monotonic_us":81002100,"wall_us":1790000000002100,"event":{"schema":1,"event":"waiting",...}}
///     {"schema":1,"entry":9,"monotonic_us":81002400,"wall_us":1790000000002400,"log":"sending ...","level":"detail"}
///
/// "entry" counts 1, 2, 3, ... since the process began. The times are microseconds of the system's monotonic clock and
/// since 1970. A call has its "arguments" where there are some (never an authorisation code), and an "error", an errno,
/// where it was refused. The last failure is the last event "ended" whose "outcome" is "failed" or "timed-out".
///
/// Any thread may ask at any time. Texts hold names of devices, and the users of Hue bridges.
/// @param text the newest whole lines that have room, and a NUL
/// @param size of the text in bytes; with less than TEMBRA_HISTORY_SIZE the oldest entries may be left out
/// @return length of the text
TEMBRA_API size_t tembra_frontend_history(char* text, size_t size);

/// Adds a line of the log to the flight recorder. The kit cannot see the library's lines by itself, because they belong
/// to the router's Logger: a program that has a Logger::Log of its own, or the router's Logger, hands them in here. Any
/// thread may call it at any time, with or without a kit; it never blocks and never calls back.
/// @param level as Logger::Log has it: 0 progress, 1 warning, 2 error, 3 detail
/// @param text of which the first 1,024 bytes are kept; null: empty
TEMBRA_API void tembra_frontend_log(int level, const char* text);

#ifdef __cplusplus
}
#endif

#endif
