#include "session.h"

#include <fcntl.h>
#include <tembra/globals.h>

#include <cerrno>
#include <new>

#include "reasons.h"
#include "servers.h"
#include "texts.h"

namespace tembra::frontend {
namespace {

constexpr Milliseconds kBetweenCancelLooks{250};
constexpr Milliseconds kForLateCall{50};
constexpr Milliseconds kForWriter{5000};  // of the database, before an operation
constexpr int kSettlingMilliseconds = 1000;
constexpr int kSettlingAtEndMilliseconds = 20;

std::string deviceText(int id, const std::string& name) {
  return name.empty() || id == 0 ? name : name + " (number " + std::to_string(id) + ")";
}

tembra_warning warningOf(tembra_reason number, const Filling& filling) {
  const Reason* reason = findReason(number);
  auto warning = sized<tembra_warning>();
  warning.reason = number;
  warning.server = filling.server;
  putText(warning.why, filling.why);
  putText(warning.text, filled(reason->text, filling));
  putText(warning.advice, filled(reason->advice, filling));
  return warning;
}

End endOfOpening(const tembra_failure& failure) {
  switch (failure.cause) {
    case TEMBRA_OPENING_IN_USE:
      return failed(TEMBRA_REASON_IN_USE);
    case TEMBRA_OPENING_NO_THREAD:
      return failed(TEMBRA_REASON_NO_THREAD, 0, failure.error);
    case TEMBRA_OPENING_NO_MEMORY:
      return failed(TEMBRA_REASON_NO_MEMORY, 0, failure.error);
    case TEMBRA_OPENING_REPLACED:
      return failed(TEMBRA_REASON_CONNECTION_LOST);
    default:
      return failed(TEMBRA_REASON_NO_SOCKET, 0, failure.error);
  }
}

// The connection's own user may have had a failure: it is no reason to forget that one.
bool isWorthKeeping(const End& end) {
  return (end.outcome == TEMBRA_FAILED || end.outcome == TEMBRA_TIMED_OUT) && end.reason != TEMBRA_REASON_IN_USE;
}

/// Ends the operation when another process keeps the database locked.
class GivingUp {
 public:
  void operator()() const {
    if (Clock::now() >= until_) throw failed(TEMBRA_REASON_DATABASE_UNREADABLE, 0, EWOULDBLOCK);
  }

 private:
  Clock::time_point until_ = Clock::now() + kForWriter;
};

DeviceList usableDatabase() {
  DeviceList list = readDevices();
  const bool isRead = list.error == 0 || list.error == EBADMSG;
  const int writing = isRead ? tembra_check_database() : 0;
  if (writing != 0) list.error = writing;
  return list;
}

}  // namespace

tembra_failure lastFailure(tembra_failure_kind kind) {
  auto failure = sized<tembra_failure>();
  tembra_last_failure(kind, &failure);
  return failure;
}

DeviceList readDevices() {
  DeviceList list;
  while (true) {
    const long count = tembra_read_devices(list.devices.data(), sizeof(tembra_device), list.devices.size());
    if (count < 0) return {{}, errno};
    const auto size = static_cast<std::size_t>(count);
    const bool complete = size <= list.devices.size();
    list.devices.resize(size);
    if (complete) return list;
  }
}

Session::Session(TembraAssociation& service, Outbox& outbox, Inbox& inbox, Runner& runner, Watching& watching,
                 bool keepOpen, int& socket)
    : service_(service),
      outbox_(outbox),
      inbox_(inbox),
      runner_(runner),
      watching_(watching),
      keepOpen_(keepOpen),
      socket_(socket) {}

void Session::enterWait(tembra_phase phase, const KnownDevice& device) {
  enter(phase, Milliseconds(tembra_wait_left()), device);
}

void Session::warn(tembra_reason reason, int server, const std::string& why) {
  Filling filling;
  filling.server = server;
  filling.why = why;
  tell(TEMBRA_EVENT_WARNING, warningOf(reason, filling));
}

void Session::warnOf(tembra_reason reason, int deviceId, const std::string& deviceName) {
  Filling filling;
  filling.device = deviceText(deviceId, deviceName);
  tembra_warning warning = warningOf(reason, filling);
  if (reason == TEMBRA_REASON_ALREADY_KNOWN) *warning.advice = '\0';  // the operation does what is to be done
  warning.device_id = deviceId;
  putText(warning.device_name, deviceName);
  tell(TEMBRA_EVENT_WARNING, warning);
}

void Session::requireRadios() {
  const bool zigbee = listens(SERVER_ZIGBEE);
  const bool zwave = listens(SERVER_ZWAVE);
  if (!zigbee && !zwave) throw failed(TEMBRA_REASON_NO_RADIO_SERVER);
  if (!zigbee || !zwave) warn(TEMBRA_REASON_ONE_RADIO_SERVER, zigbee ? SERVER_ZWAVE : SERVER_ZIGBEE);
}

void Session::requireServer(ServerType server) {
  if (!listens(server)) throw failed(TEMBRA_REASON_NO_SERVER, server);
}

DeviceList Session::listDevices() {
  return call([] { return readDevices(); }, GivingUp());
}

// A file that the library cannot read or write it would delete: it is not even asked.
DeviceList Session::requireDatabase() {
  DeviceList list = call([] { return usableDatabase(); }, GivingUp());
  if (list.error == EBADMSG) {
    warn(TEMBRA_REASON_DATABASE_DAMAGED, 0);
  } else if (list.error != 0) {
    throw failed(TEMBRA_REASON_DATABASE_UNREADABLE, 0, list.error);
  }
  return list;
}

void Session::open() {
  if (socket_ != 0) service_.closeAssocConnection();  // whoever watches goes on watching
  socket_ = 0;
  const tembra_failure before = lastFailure(TEMBRA_FAILURE_OPENING);
  TembraAssociation& service = service_;
  const int result = call([&service] { return service.checkAssocConnection(); });
  socket_ = result == 0 ? __atomic_load_n(&service_.sock, __ATOMIC_RELAXED) : 0;
  checkOpening(result, before);
  const std::string why = watching_.begin();
  if (!why.empty()) warn(TEMBRA_REASON_NOT_WATCHED, 0, why);
}

// Without a receive thread the library says that it opened the connection, but nobody would ever hear an answer.
void Session::checkOpening(int result, const tembra_failure& before) {
  const tembra_failure now = lastFailure(TEMBRA_FAILURE_OPENING);
  if (now.count != before.count) throw endOfOpening(now);
  if (result != 0) throw failed(TEMBRA_REASON_NO_SOCKET);
}

void Session::checkSent(const tembra_failure& before) {
  const tembra_failure now = lastFailure(TEMBRA_FAILURE_SEND);
  if (now.count != before.count) throw failed(TEMBRA_REASON_NOT_SENT, now.server, now.error);
}

bool Session::callEnded() {
  const Inbox::Call call = inbox_.awaitCall(Clock::now() + kBetweenCancelLooks);
  if (call == Inbox::Call::kCancelled) throw Cancelled{};
  callRuns_ = call == Inbox::Call::kRuns;
  return !callRuns_;
}

// An event may have come just before the connection was closed, and a web server's may be closed right behind its
// opening.
bool Session::isLost() const { return (socket_ == 0 || fcntl(socket_, F_GETFD) < 0) && !inbox_.hasEvents(); }

std::unique_ptr<LibraryEvent> Session::nextEvent(Clock::time_point until) {
  while (true) {
    inbox_.await(std::min(until, Clock::now() + kBetweenCancelLooks));
    if (inbox_.isCancelled()) throw Cancelled{};
    if (auto event = inbox_.takeEvent()) return event;
    if (inbox_.hasLostEvents()) throw std::bad_alloc();
    if (isLost()) throw failed(TEMBRA_REASON_CONNECTION_LOST);
    if (inbox_.hasChoice() || Clock::now() >= until) return nullptr;
  }
}

void Session::pause(Clock::time_point until) {
  while (Clock::now() < until) {
    inbox_.await(until);
    if (inbox_.isCancelled()) throw Cancelled{};
    static_cast<void>(inbox_.takeEvent());
  }
}

// The library first: what it reports meanwhile is heard before it waits again.
bool Session::isSettled() { return tembra_settle(0) == 0 && !inbox_.hasEvents(); }

void Session::settle() { tembra_settle(kSettlingMilliseconds); }

bool Session::libraryIsIdle() { return __atomic_load_n(&idle, __ATOMIC_ACQUIRE) != 0; }

End Session::cancelled() const {
  return {TEMBRA_CANCELLED, isBeyondRecall_ ? TEMBRA_REASON_CANCELLED_LATE : TEMBRA_REASON_CANCELLED, 0, 0, 0, {}};
}

void Session::closeLibrary() {
  watching_.leave();
  service_.closeAssocConnection();
  socket_ = 0;
}

// A call that is under way goes on: without the connection, unless half of what it sends would do harm. The radios have
// no part in what other servers do. Behind the event that ended the operation the library becomes idle: then there is
// nothing to cancel.
void Session::close() {
  const int operation = outbox_.state().operation;
  const bool onRadios = operation == TEMBRA_OPERATION_ADD || operation == TEMBRA_OPERATION_REMOVE;
  const bool isSettled = tembra_settle(kSettlingAtEndMilliseconds) == 0;
  if (isSettled && tembra_wait_left() < 0) socket_ = 0;  // the library closes a web server's connection itself
  if (onRadios && !libraryIsIdle() && socket_ != 0) service_.sendCancelTo(cancel_both);
  if (callRuns_ ? !isBeyondRecall_ : !keepOpen_) closeLibrary();
}

void Session::finish(const End& end) {
  auto ended = sized<tembra_ended>();
  ended.outcome = end.outcome;
  ended.reason = end.reason;
  ended.phase = outbox_.state().phase;
  ended.waited = outbox_.waited();
  ended.server = end.server;
  ended.error = end.error;
  ended.device_id = end.deviceId;
  putText(ended.device_name, end.deviceName);
  if (socket_ == 0) watching_.leave();  // else it would take itself for the holder
  const std::string holder = end.reason == TEMBRA_REASON_IN_USE ? watching_.tellHolder(ended) : "";
  const Filling filling{end.server, end.error, ended.phase, deviceText(end.deviceId, end.deviceName), holder, {}};
  const Reason* reason = findReason(end.reason);
  putText(ended.text, filled(reason->text, filling));
  putText(ended.advice, filled(reason->advice, filling));
  outbox_.enter(TEMBRA_PHASE_CLOSING, Milliseconds(-1));
  close();
  if (!callRuns_ || isLateCallOver(kForLateCall)) inbox_.acceptNext();
  const std::string json = outbox_.end(ended, callRuns_);
  if (isWorthKeeping(end)) watching_.keepFailure();  // before those hear of it who come for the file
  watching_.publish(json);
  if (socket_ == 0) watching_.end();
  if (!callRuns_ || !isLateCallOver(Milliseconds(-1))) return;
  watching_.end();
  inbox_.acceptNext();
}

// An opening that was cancelled before it had the connection has it at its end, and a reset still has it.
bool Session::isLateCallOver(Milliseconds longest) {
  callRuns_ = !inbox_.awaitLateCall(longest);
  if (!callRuns_) closeLibrary();
  return !callRuns_;
}

}  // namespace tembra::frontend
