// The stage of a test: the router around the library, its clock, its daemons, and the record of what happened.
#ifndef TEMBRA_TESTS_KIT_ROUTER_H
#define TEMBRA_TESTS_KIT_ROUTER_H

#include <tembra/assoc.h>

#include <functional>
#include <string>
#include <vector>

#include "kit/database.h"
#include "kit/faults.h"
#include "kit/node.h"
#include "kit/nvram.h"
#include "kit/peer.h"
#include "kit/stage.h"
#include "kit/state_text.h"
#include "kit/stderr_capture.h"
#include "kit/trace.h"
#include "kit/zigbee_device.h"

namespace kit {

/// Make one in each test; the README tells how to use it.
class Router {
 public:
  explicit Router(Clock clock = Clock::kVirtual);
  ~Router();
  Router(const Router&) = delete;
  Router& operator=(const Router&) = delete;

  using Role = TembraAssociation* (*)();

  /// The service object; an LCD front end unless a role was taken before.
  TembraAssociation& assoc();

  /// Registers the recording callback, opens the connection (which must succeed), waits until the receive thread is
  /// at rest and forgets the trace so far.
  TembraAssociation& connect(Role role = &TembraAssociation::LCDAssocInit);

  /// The steps of `connect` one by one, nothing forgotten.
  void registerCallback();
  int open();

  /// Closes and waits until the receive thread has ended.
  void close();

  // ---- Time -------------------------------------------------------------------------------------------------------

  /// Lets virtual seconds pass: what is due fires in order, and the library comes to rest after each.
  void advance(long seconds);
  void settle();
  void interruptReceive(int error);
  void interruptSleep(unsigned remaining);

  /// Waits until a thread other than the test's sleeps.
  void awaitSleeper();

  /// With the real clock: what the library waits for and sleeps passes this many times as fast.
  void hurry(int times);

  // ---- The others -------------------------------------------------------------------------------------------------

  Peer& zwave() { return zwave_; }
  Peer& zigbee() { return zigbee_; }
  Peer& hue() { return hue_; }
  Peer& nest() { return nest_; }
  Peer& ha() { return ha_; }

  /// A stranger at any loopback address; port 0 takes any.
  Peer from(const std::string& address, int port = 0);

  Nvram& nvram() { return nvram_; }
  Database& database() { return database_; }

  // ---- What is to happen ------------------------------------------------------------------------------------------

  void fail(Call call, int error, int times = 1, int spared = 0);
  void nameType(int type, const std::string& name);
  void numberType(const std::string& name, int type);
  void loggerThrows(bool throws);

  /// Runs in the callback after the event was recorded, on the thread of the callback.
  void onEvent(std::function<void(AssocEvent*)> hook);

  /// Runs in the Logger after the line was recorded.
  void onLog(std::function<void(const std::string&)> hook);

  /// Runs after a datagram was sent, on the sending thread; gets the destination's name.
  void onSend(std::function<void(const std::string&)> hook);

  // ---- What happened ----------------------------------------------------------------------------------------------

  void watch(unsigned kinds);
  std::string takeTrace();
  std::vector<Datagram> takeSends();
  std::vector<RecordedEvent> takeEvents();
  void forget();

  /// See state_text.h.
  [[nodiscard]] std::string state() const;

 private:
  Stage stage_;
  StderrCapture stderrCapture_;
  Nvram nvram_;
  Database database_{DBName};
  Peer zwave_, zigbee_, hue_, nest_, ha_;
};

}  // namespace kit

#endif
