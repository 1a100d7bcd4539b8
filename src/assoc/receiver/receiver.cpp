// The receive thread: wait for a datagram or a time-out, find out whose it is, run that server's flow.
#include <sys/socket.h>
#include <tembra/association.h>
#include <tembra/globals.h>
#include <ctime>

#include <cerrno>
#include <cstdio>
#include <cstring>

#include "assoc/connection.h"
#include "assoc/event_delivery.h"
#include "assoc/receiver/event_buffers.h"
#include "assoc/receiver/flow.h"
#include "assoc/receiver/strict_gate.h"
#include "assoc/receiver/timeouts.h"
#include "support/log.h"
#include "support/shared_state.h"
#include "support/state_lock.h"
#include "support/strict_mode.h"
#include "support/text_writer.h"

namespace tembra {
namespace {

constexpr timespec kLostDescriptorPause = {0, 100'000'000};

// The sender of the last datagram. The same server mostly sends the next one, whose address then needs no new text.
class LastSender {
 public:
  ClientType typeOf(TembraAssociation& assoc, in_addr address) {
    if (address.s_addr != address_.s_addr) {
      address_ = address;
      type_ = assoc.findClientType(address);
    }
    return type_;
  }

 private:
  in_addr address_{INADDR_ANY};
  ClientType type_ = CLIENT_UNKNOWN;
};

class Receiver {
 public:
  explicit Receiver(TembraAssociation& assoc) : assoc_(assoc), connection_(assoc), gate_(assoc) {}
  void run();

 private:
  void enter();
  bool receiveOnce();
  bool await(int& error);
  ssize_t receive(const timeval& wait);
  void timedOut();
  void reportTimeout();
  [[nodiscard]] bool handleDatagram();
  void dispatch(ClientType sender);
  void runFlow(void (*handle)(const Flow&));

  TembraAssociation& assoc_;
  ServedConnection connection_;
  sockaddr_in sender_{};
  LastSender lastSender_;
  StrictGate gate_;
  bool isStrict_ = isStrict();
  int timeoutSeconds_ = kIdleTimeout;
  EventBuffers events_;
  // Keep this after `events_`. If it came first, an answer would be copied between addresses a multiple of 4096 apart,
  // and each load would wait for the store before it (measured: three times slower).
  unsigned char datagram_[kReceiveBufferSize] = {};
};

// When somebody else has closed the descriptor, every receive fails at once. Without a pause the loop would be busy.
void pauseIfDescriptorIsLost(int error) {
  if (error != EBADF && error != ENOTSOCK) return;
  const StateUnlocked unlocked;
  nanosleep(&kLostDescriptorPause, nullptr);
}

void Receiver::run() {
  enter();
  while (assoc_.running != 0 && receiveOnce()) {
  }
  log(assoc_, Level::kProgress, TEMBRA_LOG_PREFIX "exited receive thread\n");
}

// Sets the service idle. checkAssocConnection waits for this: done later, it could reset an operation that the front
// end has started meanwhile.
void Receiver::enter() {
  log(assoc_, Level::kProgress, TEMBRA_LOG_PREFIX "entered receive thread");
  if (!connection_.isSuperseded()) {
    setIdle(true);
    assoc_.cancelTarget = 0;
  }
  finishStart();
}

// One pass of the loop. False when the connection was closed or replaced: then the datagram, or the end of the wait, is
// dropped. When only `running` became 0, it is handled, and the loop ends afterwards.
bool Receiver::receiveOnce() {
  if (!connection_.isOpen()) return false;
  int error = 0;
  const bool hasDatagram = await(error);
  if (!connection_.isOpen()) return false;
  if (!hasDatagram) timedOut();
  if (!hasDatagram || handleDatagram()) gate_.restart();
  pauseIfDescriptorIsLost(error);
  return true;
}

// Returns false and sets `error` if no datagram came.
bool Receiver::await(int& error) {
  bool hasDatagram = false;
  const timeval wait = isStrict_ ? gate_.left(timeoutSeconds_) : timeval{timeoutSeconds_, 0};
  connection_.beginReceive(wait);
  {
    const StateUnlocked unlocked;
    hasDatagram = receive(wait) >= 0;
    if (!hasDatagram) error = errno;
  }
  connection_.endReceive();
  isStrict_ = isStrict();
  return hasDatagram;
}

// The time-out is set on every pass, and any failure to receive counts as one.
ssize_t Receiver::receive(const timeval& wait) {
  if (wait.tv_sec == 0 && wait.tv_usec == 0) {  // strangers' datagrams have filled the wait; zero would be for ever
    errno = EAGAIN;
    return -1;
  }
  if (setsockopt(connection_.descriptor(), SOL_SOCKET, SO_RCVTIMEO, &wait, sizeof wait) != 0) {
    std::perror("libTembraAssoc:setsockopt: rcvtimeo");
  }
  socklen_t senderLength = sizeof sender_;
  return recvfrom(connection_.descriptor(), datagram_, sizeof datagram_, 0, reinterpret_cast<sockaddr*>(&sender_),
                  &senderLength);
}

// An operation that timed out keeps its time-out and its state. So the next wait is as long, and a late answer is
// handled like one in time.
void Receiver::timedOut() {
  LogLine(assoc_, Level::kProgress, TEMBRA_LOG_PREFIX "Didn't get packet for ") << timeoutSeconds_ << " secs";
  if (!isIdle()) {
    reportTimeout();
  } else {
    timeoutSeconds_ = kIdleTimeout;
    log(assoc_, Level::kProgress, TEMBRA_LOG_PREFIX "idle timeout set to 180 sec...");
  }
}

void Receiver::reportTimeout() {
  assoc_.sendCancelTo(static_cast<cancel_type>(assoc_.cancelTarget));
  TimeoutReport report{};
  report.lastEventCode = assoc_.lastEventCode;
  TextWriter(report.json, sizeof report.json)
      << R"({"CommandType":")" << fieldText(cmdtype, sizeof cmdtype - 1)
      << R"(", "MobileInternalIndex":"","Success":"false","Reason":"TimeoutReached"})";
  std::memcpy(events_.a.payload, &report, sizeof report);
  setStateLeft(true);  // first, because an operation that begins during the callback takes it back
  deliver(assoc_, events_.a, EVENT_TIMEOUT);
  if (connection_.isSuperseded()) return;
  assoc_.lastEventCode = 0;
  assoc_.cancelTarget = 0;
  setIdle(true);
}

// False when the datagram does not count: then the wait goes on.
bool Receiver::handleDatagram() {
  const ClientType sender = lastSender_.typeOf(assoc_, sender_.sin_addr);
  if (isStrict_ && !gate_.admits(sender_, sender)) return false;
  dispatch(sender);
  return true;
}

// Four servers have a flow each. Only their answers make the association this router's own.
void Receiver::dispatch(ClientType sender) {
  switch (sender) {
    case CLIENT_ZWAVE:
      return runFlow(handleZwave);
    case CLIENT_ZIGBEE:
      return runFlow(handleZigbee);
    case CLIENT_HUE:
      return runFlow(handleHue);
    case CLIENT_NEST:
      return runFlow(handleNest);
    case CLIENT_HA:
      return log(assoc_, Level::kWarning, TEMBRA_LOG_PREFIX "\n*** Got data from HA_Server. Not implemented ***\n");
    case CLIENT_MESH:
      return log(assoc_, Level::kWarning, TEMBRA_LOG_PREFIX "\n*** Got data from Mesh_Server. Not implemented ***\n");
    case CLIENT_UNKNOWN:
      break;
  }
  log(assoc_, Level::kError, TEMBRA_LOG_PREFIX "received command from unknown server\n");
}

void Receiver::runFlow(void (*handle)(const Flow&)) {
  setAssociationMeshId(local_meshID);
  handle({assoc_, connection_, events_, timeoutSeconds_, datagram_});
}

}  // namespace
}  // namespace tembra

void* TembraAssociation::receiverHelper(void* self) { return static_cast<TembraAssociation*>(self)->receiver(self); }

// The lock is held from one receive to the next.
void* TembraAssociation::receiver(void* /*self*/) {
  const tembra::StateLock lock;
  tembra::Receiver(*this).run();
  return nullptr;
}
