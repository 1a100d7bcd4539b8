// What the library did, in order, as readable lines; and the bytes behind the lines.
#ifndef TEMBRA_TESTS_KIT_TRACE_H
#define TEMBRA_TESTS_KIT_TRACE_H

#include <tembra/events.h>

#include <initializer_list>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "kit/text.h"
#include "kit/visible_text.h"

namespace kit {

/// A datagram that the library sent (or failed to send).
struct Datagram {
  std::string destination;  // "zigbee", "zwave", "hue", "nest", "ha", or the address
  Bytes bytes;
  std::string state;  // the service's state at that moment, see state_text.h
};

/// An event as the callback got it.
struct RecordedEvent {
  AssocEvent event{};
  std::string state;  // the service's state at that moment, see state_text.h
  std::thread::id thread;

  [[nodiscard]] DeviceReport report() const;
  [[nodiscard]] TimeoutReport timeout() const;
};

/// Lines that are traced only when a test asks for them.
enum Watch : unsigned {
  kWatchConnection = 1,  // socket, priority, bind, popen, thread, detach, shutdown, close
  kWatchTimeouts = 2,    // SO_RCVTIMEO, at each receive
  kWatchDatabase = 4,    // dpopen, dprepair, dpclose
  kWatchRecords = 8      // dpiterinit, dpiternext, dpget
};

class Trace {
 public:
  void watch(unsigned kinds);
  void add(std::string_view line);
  void addWatched(Watch kind, std::string_view line);
  void addSend(Datagram datagram, std::string_view line);
  void addEvent(RecordedEvent event);

  /// The lines, datagrams or events since they were last taken.
  std::string takeLines();
  std::vector<Datagram> takeSends();
  std::vector<RecordedEvent> takeEvents();
  void forget();

 private:
  std::mutex mutex_;
  unsigned watched_ = 0;
  std::string lines_;
  std::vector<Datagram> sends_;
  std::vector<RecordedEvent> events_;
};

Trace& trace();

/// Joins lines the way Trace does.
std::string lines(std::initializer_list<std::string_view> each);

/// "EPERM" and the like.
std::string errorName(int error);

}  // namespace kit

#endif
