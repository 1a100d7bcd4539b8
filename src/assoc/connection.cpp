// Opening and closing the library's one socket and its receive thread.
#include "assoc/connection.h"

#include <fcntl.h>
#include <pthread.h>
#include <sys/socket.h>
#include <tembra/endpoints.h>
#include <tembra/globals.h>
#include <unistd.h>
#include <csignal>

#include <cstdlib>
#include <utility>

#include "mesh/mesh_identity.h"
#include "support/gate.h"
#include "support/log.h"
#include "support/shared_state.h"
#include "support/state_lock.h"
#include "support/text.h"
#include "wire/display_error.h"

using tembra::Level;
using tembra::StateLock;

namespace {

constexpr int kUdp = 17;  // protocol number of UDP (IANA)
constexpr int kPriority = 1;
constexpr int kClosed = 0;  // the sock field says so with descriptor 0
constexpr int kFirstOrdinaryDescriptor = 3;
constexpr long kLongestReceiveEndSeconds = 2;

// An opener and the receive thread that it waits for. One each: what the new thread calls before it has started, the
// router's Logger included, may open another connection.
struct Start {
  TembraAssociation& assoc;
  pthread_t thread;
  tembra::Gate gate;
};

constinit tembra::Gate receives;
thread_local Start* awaitedStart = nullptr;
tembra::ConnectionNumber currentNumber = 0;

int fail(const char* message) {
  tembra::displayError(message);
  return -1;
}

// Descriptor 0 would say "closed": with standard input closed the socket is moved away from it.
int awayFromZero(int descriptor) {
  if (descriptor != kClosed) return descriptor;
  const int moved = fcntl(descriptor, F_DUPFD_CLOEXEC, kFirstOrdinaryDescriptor);
  close(descriptor);
  return moved;
}

// Close-on-exec, so that no child of the process keeps the address bound.
int openSocket() {
  const int descriptor = awayFromZero(socket(AF_INET, SOCK_DGRAM, kUdp));
  if (descriptor >= 0) fcntl(descriptor, F_SETFD, FD_CLOEXEC);
  return descriptor;
}

// No address reuse: that the second opener fails is how front ends notice each other.
int openBoundSocket(const TembraAssociation& assoc) {
  const int descriptor = openSocket();
  if (descriptor < 0) return fail(TEMBRA_LOG_PREFIX "socket()");
  const char* complaint = nullptr;
  if (setsockopt(descriptor, SOL_SOCKET, SO_PRIORITY, &kPriority, sizeof kPriority) != 0) {
    complaint = TEMBRA_LOG_PREFIX "setsockopt failed";
  } else if (bind(descriptor, reinterpret_cast<const sockaddr*>(&assoc.localAddr), static_cast<socklen_t>(len_assoc)) !=
             0) {
    complaint = TEMBRA_LOG_PREFIX "Assoc binding failed";
  }
  if (complaint == nullptr) return descriptor;
  fail(complaint);
  close(descriptor);
  return -1;
}

// Runs the router's command without the lock; its text ends up in tempStr. False when the connection was closed or
// replaced meanwhile.
bool readMeshId(const TembraAssociation& assoc, int descriptor, tembra::ConnectionNumber number) {
  char text[tembra::kMeshIdTextSize] = {};
  {
    const tembra::StateUnlocked unlocked;
    GetMeshId(text);
  }
  if (assoc.sock != descriptor || currentNumber != number) return false;
  tembra::copyText(tempStr, text);
  local_meshID = std::atoi(text);
  return true;
}

// The new thread says itself who it is: it may come to a reader of that before pthread_create has told the opener.
void* runReceiver(void* start) {
  receiver_thread = pthread_self();
  awaitedStart = static_cast<Start*>(start);
  return TembraAssociation::receiverHelper(&awaitedStart->assoc);
}

// With every signal blocked: a signal would end a receive early, and that counts as a time-out.
int createThread(Start& start) {
  sigset_t all;
  sigset_t before;
  sigfillset(&all);
  pthread_sigmask(SIG_SETMASK, &all, &before);
  const int error = pthread_create(&start.thread, nullptr, &runReceiver, &start);
  pthread_sigmask(SIG_SETMASK, &before, nullptr);
  return error;
}

// Waits until the thread has reset `idle` and the cancel target, so that an operation started right after the
// opening is not reset. The lock stays held: no datagram is handled before the opening is complete.
int startReceiver(Start& start) {
  start.gate.begin();
  const int error = createThread(start);
  if (error == 0) {
    start.gate.wait();
    tembra::log(start.assoc, Level::kProgress, TEMBRA_LOG_PREFIX "Thread created successfully");
  } else {
    tembra::LogLine(start.assoc, Level::kProgress, TEMBRA_LOG_PREFIX "can't create thread :[")
        << tembra::ErrnoText(error).text() << "]";
  }
  return error;
}

}  // namespace

int TembraAssociation::checkAssocConnection() {
  const StateLock lock;
  const int descriptor = openBoundSocket(*this);
  if (descriptor < 0) return -1;
  sock = descriptor;
  running = 1;
  const tembra::ConnectionNumber number = ++currentNumber;
  tembra::setAssociationMeshId(tembra::kMeshIdUnknown);
  if (!readMeshId(*this, descriptor, number)) return -1;
  Start start{*this, {}, {}};
  const int error = startReceiver(start);
  if (currentNumber == number) tembra::clearCommandType();
  if (error == 0) pthread_detach(start.thread);
  return 0;
}

void TembraAssociation::closeAssocConnection() {
  const StateLock lock;
  tembra::log(*this, Level::kProgress, TEMBRA_LOG_PREFIX "closing the Assoc Connection");
  running = 0;
  tembra::setAssociationMeshId(tembra::kMeshIdUnknown);
  closeMark = -1;
  const int descriptor = sock;
  if (descriptor == kClosed) return;
  sock = kClosed;  // taken: whoever closes at the same time finds nothing to close
  shutdown(descriptor, SHUT_RDWR);
  {
    const tembra::StateUnlocked unlocked;
    receives.waitFor(kLongestReceiveEndSeconds);
  }
  close(descriptor);
}

namespace tembra {

bool ReceiverLease::openerWaits() { return awaitedStart != nullptr; }

// The opener's record ends as soon as the opener goes on.
void ReceiverLease::started() { std::exchange(awaitedStart, nullptr)->gate.endLast(); }

ReceiverLease::ReceiverLease(TembraAssociation& assoc)
    : assoc_(assoc), number_(currentNumber), descriptor_(assoc.sock) {}

bool ReceiverLease::isOpen() const { return assoc_.sock == descriptor_ && !isSuperseded(); }

bool ReceiverLease::isSuperseded() const { return currentNumber != number_; }

void ReceiverLease::beginReceive() { receives.begin(); }

void ReceiverLease::endReceive() { receives.end(); }

}  // namespace tembra
