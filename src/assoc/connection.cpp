// Opening and closing the library's one socket and its receive thread.
#include "assoc/connection.h"

#include <fcntl.h>
#include <pthread.h>
#include <sys/socket.h>
#include <tembra/endpoints.h>
#include <tembra/globals.h>
#include <unistd.h>
#include <csignal>

#include <cerrno>
#include <cstdlib>

#include "mesh/mesh_identity.h"
#include "support/failures.h"
#include "support/log.h"
#include "support/shared_state.h"
#include "support/state_lock.h"
#include "support/strict_mode.h"
#include "support/text.h"
#include "wire/display_error.h"

using tembra::Level;
using tembra::StateLock;

namespace {

constexpr int kUdp = 17;  // protocol number of UDP (IANA)
constexpr int kPriority = 1;
constexpr int kClosed = 0;  // the sock field says so with descriptor 0
constexpr int kFirstOrdinaryDescriptor = 3;

// The connection that was opened last, and the receive of the thread that serves it. Guarded by the state lock, as all
// of this is.
struct {
  tembra::ConnectionNumber number = 1;
  tembra::CurrentReceive receive;
} latest;
constexpr tembra::ConnectionNumber kNoConnection = 0;
thread_local int connectionsServed = 0;

// What threads wait for: a start is under way, a receive is under way.
enum class Start { kNone, kAwaitsThread, kAwaitsOpener } start = Start::kNone;
int receivesUnderWay = 0;

bool awaitsThread(unsigned /*unused*/) { return start == Start::kAwaitsThread; }
bool awaitsOpener(unsigned /*unused*/) { return start == Start::kAwaitsOpener; }
bool isReceiving(unsigned /*unused*/) { return receivesUnderWay > 0; }

int fail(const char* message) {
  const auto cause = errno == EADDRINUSE ? TEMBRA_OPENING_IN_USE
                     : errno == ENOMEM   ? TEMBRA_OPENING_NO_MEMORY
                                         : TEMBRA_OPENING_NO_SOCKET;
  tembra::recordOpeningFailure(cause, errno);
  tembra::displayError(message);
  return -1;
}

// Descriptor 0 means "closed". A process without standard input may get it for the socket, which is then moved.
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

// No address reuse: front ends notice each other because the second opener fails.
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
bool readMeshId(const TembraAssociation& assoc, tembra::ConnectionNumber number) {
  const int descriptor = assoc.sock;
  char text[tembra::kMeshIdTextSize] = {};
  {
    const tembra::StateUnlocked unlocked;
    GetMeshId(text);
  }
  if (assoc.sock != descriptor || latest.number != number) return false;
  tembra::copyText(tempStr, text);
  local_meshID = std::atoi(text);
  return true;
}

// With every signal blocked: a signal would end a receive early, and that counts as a time-out. The thread's handle
// stays empty when nothing is started.
int createThread(TembraAssociation& assoc) {
  sigset_t all;
  sigset_t before;
  sigfillset(&all);
  pthread_sigmask(SIG_SETMASK, &all, &before);
  receiver_thread = {};
  const int error = pthread_create(&receiver_thread, nullptr, &TembraAssociation::receiverHelper, &assoc);
  pthread_sigmask(SIG_SETMASK, &before, nullptr);
  return error;
}

// Waits until the thread has reset `idle` and the cancel target, so that an operation started right after the opening
// is not reset. A thread that comes too late still resets them.
pthread_t startReceiver(TembraAssociation& assoc) {
  const int error = createThread(assoc);
  if (error != 0) {
    tembra::recordOpeningFailure(TEMBRA_OPENING_NO_THREAD, error);
    tembra::LogLine(assoc, Level::kProgress, TEMBRA_LOG_PREFIX "can't create thread :[")
        << tembra::ErrnoText(error).text() << "]";
    return {};
  }
  const pthread_t thread = receiver_thread;  // another thread may open a connection meanwhile
  start = Start::kAwaitsThread;
  if (!tembra::waitWhile(awaitsThread)) tembra::recordOpeningFailure(TEMBRA_OPENING_NO_THREAD, ETIMEDOUT);
  tembra::log(assoc, Level::kProgress, TEMBRA_LOG_PREFIX "Thread created successfully");
  return thread;
}

}  // namespace

int TembraAssociation::checkAssocConnection() {
  const StateLock lock;
  static_cast<void>(tembra::isStrict());  // the receive thread would read the environment beside a setenv of this one
  const int descriptor = openBoundSocket(*this);
  if (descriptor < 0) return -1;
  tembra::setSocket(*this, descriptor);
  running = 1;
  ++latest.number;
  latest.receive.isServed = latest.receive.isUnderWay = false;
  tembra::announceChange();
  const tembra::ConnectionNumber number = latest.number;
  tembra::setAssociationMeshId(tembra::kMeshIdUnknown);
  tembra::setStateLeft(true);
  if (!readMeshId(*this, number)) {
    tembra::recordOpeningFailure(TEMBRA_OPENING_REPLACED, 0);
    return -1;
  }
  const pthread_t thread = startReceiver(*this);
  if (latest.number == number) {
    tembra::clearCommandType();
    start = Start::kNone;
    tembra::announceChange();
  }
  if (pthread_equal(thread, {}) == 0) pthread_detach(thread);
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
  tembra::setSocket(*this, kClosed);  // a thread that closes at the same time finds nothing to close
  shutdown(descriptor, SHUT_RDWR);
  tembra::waitWhile(isReceiving);
  close(descriptor);
}

namespace tembra {

ServedConnection::ServedConnection(TembraAssociation& assoc)
    : assoc_(assoc), number_(latest.receive.isServed ? kNoConnection : latest.number), descriptor_(assoc.sock) {
  latest.receive.isServed = true;
  ++connectionsServed;
}

ServedConnection::~ServedConnection() {
  --connectionsServed;
  if (isSuperseded()) return;
  latest.receive.isServed = false;
  announceChange();
}

bool ServedConnection::isOpen() const { return assoc_.sock == descriptor_ && !isSuperseded(); }

bool ServedConnection::isSuperseded() const { return latest.number != number_; }

void finishStart() {
  if (start != Start::kAwaitsThread) return;
  start = Start::kAwaitsOpener;
  announceChange();
  waitWhile(awaitsOpener);
}

void ServedConnection::beginReceive(timeval timeout) {
  ++receivesUnderWay;
  if (isSuperseded()) return;
  CurrentReceive& receive = latest.receive;
  receive = {true, true, receive.begun + 1, {}, timeout};
  clock_gettime(CLOCK_MONOTONIC, &receive.begin);
  announceChange();
}

void ServedConnection::endReceive() {
  --receivesUnderWay;
  if (!isSuperseded()) latest.receive.isUnderWay = false;
  announceChange();
}

const CurrentReceive& currentReceive() { return latest.receive; }

bool isReceiveThread() { return connectionsServed > 0; }

}  // namespace tembra
