// The steps of a session's script.
#ifndef TEMBRA_FUZZ_SESSION_STEPS_H
#define TEMBRA_FUZZ_SESSION_STEPS_H

namespace fuzz {

enum class Step : unsigned char {
  kDatagram,          ///< a sender (see Sender), a length word, the bytes
  kReceiveFailure,    ///< an errno; the first is the time-out
  kCall,              ///< see session/calls.h
  kDatabase,          ///< a change of the database (see Change)
  kCallFromCallback,  ///< the next event's callback makes a call
  kCallFromLogger,    ///< so does the next log line's
  kFault,             ///< a call of the library's fails, or answers oddly, the next time
  kFields,            ///< the front end writes fields and globals
};
inline constexpr unsigned kSteps = 8;

/// The first senders; the others are strangers and half-strangers.
enum class Sender : unsigned char { kZwave, kZigbee, kHue, kNest, kHa };

enum class Change : unsigned char { kPutDevice, kPutRecord, kDrop, kRemove, kCut, kLengthen, kRubbish };
inline constexpr unsigned kChanges = 7;

}  // namespace fuzz

#endif
