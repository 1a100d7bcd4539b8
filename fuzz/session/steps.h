// The steps of a session's script.
#ifndef TEMBRA_FUZZ_SESSION_STEPS_H
#define TEMBRA_FUZZ_SESSION_STEPS_H

namespace fuzz {

enum class Step : unsigned char {
  Datagram,          ///< a sender (see Sender), a length word, the bytes
  ReceiveFailure,    ///< an errno; the first is the time-out
  Call,              ///< see session/calls.h
  Database,          ///< a change of the database (see Change)
  CallFromCallback,  ///< the next event's callback makes a call
  CallFromLogger,    ///< so does the next log line's
  Fault,             ///< a call of the library's fails, or answers oddly, the next time
  Fields,            ///< the front end writes fields and globals
};
inline constexpr unsigned kSteps = 8;

/// The first senders; the others are strangers and half-strangers.
enum class Sender : unsigned char { Zwave, Zigbee, Hue, Nest, Ha };

enum class Change : unsigned char { PutDevice, PutRecord, Drop, Remove, Cut, Lengthen, Rubbish };
inline constexpr unsigned kChanges = 7;

}  // namespace fuzz

#endif
