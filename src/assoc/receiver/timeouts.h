// Every time-out of the receive loop, in seconds.
#ifndef TEMBRA_ASSOC_RECEIVER_TIMEOUTS_H
#define TEMBRA_ASSOC_RECEIVER_TIMEOUTS_H

namespace tembra {

inline constexpr int kIdleTimeout = 180;         // nothing in progress, and the first wait of a new thread
inline constexpr int kAddingTimeout = 60;        // a device answered the add; its identity is awaited
inline constexpr int kGettingInfoTimeout = 180;  // its description is awaited, then the front end's choices
inline constexpr int kRemovingTimeout = 20;      // Z-Wave: the server's closing answer to a removal is awaited

}  // namespace tembra

#endif
