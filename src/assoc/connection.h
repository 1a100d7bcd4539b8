// The open connection as the closing threads and the receive threads see it.
//
// A connection that is opened gets a number. A receive thread serves the connection that it began with. The thread
// ends when that connection is closed, even if another one was opened meanwhile. So no two threads serve one socket.
#ifndef TEMBRA_ASSOC_CONNECTION_H
#define TEMBRA_ASSOC_CONNECTION_H

#include <sys/time.h>
#include <tembra/association.h>
#include <ctime>

namespace tembra {

using ConnectionNumber = unsigned;

/// The connection that a receive thread serves. Every call needs the state lock.
class ServedConnection {
 public:
  /// Takes the connection that was opened last; none when another thread serves that connection.
  explicit ServedConnection(TembraAssociation& assoc);
  ~ServedConnection();
  ServedConnection(const ServedConnection&) = delete;
  ServedConnection& operator=(const ServedConnection&) = delete;

  [[nodiscard]] int descriptor() const { return descriptor_; }

  /// Whether this connection has neither been closed nor replaced. `running` plays no part: where it is 0 without a
  /// closing, the step that is under way goes on.
  [[nodiscard]] bool isOpen() const;

  /// Whether this connection is another thread's, or an earlier one than the latest.
  [[nodiscard]] bool isSuperseded() const;

  /// Around a receive, which itself runs without the lock: closing waits for its end before the descriptor's number is
  /// given back.
  void beginReceive(timeval timeout);
  void endReceive();

 private:
  TembraAssociation& assoc_;
  ConnectionNumber number_;
  int descriptor_;
};

// What the receive thread tells the threads that open and close. Call all of it with the state lock held.

/// The new thread is ready: checkAssocConnection goes on, and no datagram is received before the opening is complete.
void finishStart();

/// How far the thread is that serves the connection opened last.
struct CurrentReceive {
  bool isServed = false;
  bool isUnderWay = false;
  unsigned begun = 0;  ///< receives since the process began
  timespec begin{};    ///< of the one that is under way, by the monotonic clock
  timeval timeout{};
};
[[nodiscard]] const CurrentReceive& currentReceive();

/// Whether the calling thread serves a connection.
[[nodiscard]] bool isReceiveThread();

}  // namespace tembra

#endif
