#include "session/player.h"

#include <arpa/inet.h>
#include <tembra/globals.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <string_view>
#include <utility>

#include "session/steps.h"
#include "support/database_file.h"
#include "support/invariant.h"
#include "support/send_check.h"

namespace fuzz {
namespace {

constexpr int kMostNested = 3;

constexpr const char* kSenders[] = {
    "127.255.255.254", "127.255.255.253", "127.255.255.252", "127.255.255.251", "127.255.255.1",
    "127.255.255.25",  "127.255.255.4",   "127.255.255.11",  "127.0.0.1",       "0.0.0.0",
};

constexpr int kReceiveErrors[] = {EAGAIN, EBADF, ENOTSOCK, EINTR, ENOMEM, ECONNREFUSED};
constexpr int kErrors[] = {EPERM, ENOBUFS, ENETUNREACH, EMFILE, EADDRINUSE};
constexpr std::string_view kTypeNames[] = {"HueLamp", "MultilevelSwitchOnOff", "BinarySwitch", ""};

unsigned bit(Fault fault) { return 1U << static_cast<unsigned>(fault); }

template <std::size_t Size, typename Text>
void setField(char (&field)[Size], const Text& text) {
  std::copy_n(text.begin(), std::min(text.size(), Size), field);
}

}  // namespace

Player::Player(Script& script)
    : script_(script), stage_(*this), check_(stage_.assoc()), frontEnd_{stage_.assoc(), script, check_} {
  const DatabaseWriter small;  // the one that the library makes itself is big
}

Player::~Player() {
  stage_.assoc().closeAssocConnection();
  check();
  require(!stage_.hasSockets(), "no socket is left open");
}

void Player::play() {
  unsigned char nothing[kReceiveBufferSize];
  sockaddr_in nobody{};
  while (!script_.atEnd()) {
    Receive none{nothing, &nobody};
    step(none);
    check();
  }
}

// Where a receive finds its connection closed, by whomever, it ends without a sender.
ssize_t Player::receive(int descriptor, unsigned char* buffer, sockaddr_in& sender) {
  ++receives_;
  check();
  Outcome outcome = Outcome::kGoOn;
  Receive receive{buffer, &sender};
  const auto isOpen = [&, binding = stage_.bindings()] {
    return stage_.boundSocket() == descriptor && stage_.bindings() == binding;
  };
  while (outcome == Outcome::kGoOn && isOpen()) {
    if (script_.atEnd()) {
      stage_.assoc().closeAssocConnection();
    } else {
      outcome = step(receive);
    }
    if (outcome == Outcome::kGoOn) check();
  }
  --receives_;
  if (!isOpen()) {
    sender = {};
    return 0;
  }
  if (outcome == Outcome::kDatagram) return receive.length;
  errno = receive.error;
  return -1;
}

Player::Outcome Player::step(Receive& receive) {
  switch (static_cast<Step>(script_.choose(kSteps))) {
    case Step::kDatagram:
      return sendDatagram(receive);
    case Step::kReceiveFailure:
      return failReceive(receive);
    case Step::kCall:
      makeCall(frontEnd_);
      break;
    case Step::kDatabase:
      changeDatabase();
      break;
    case Step::kCallFromCallback:
      callInCallback_ = true;
      break;
    case Step::kCallFromLogger:
      callInLogger_ = true;
      break;
    case Step::kFault:
      armFault();
      break;
    case Step::kFields:
      writeFields();
  }
  return Outcome::kGoOn;
}

// What the buffer held before stays behind a short datagram.
Player::Outcome Player::sendDatagram(Receive& receive) {
  receive.sender->sin_family = AF_INET;
  receive.sender->sin_addr.s_addr = inet_addr(kSenders[script_.choose(std::size(kSenders))]);
  const auto bytes = script_.take(script_.word() % (kReceiveBufferSize + 1));
  std::ranges::copy(bytes, receive.buffer);
  receive.length = static_cast<ssize_t>(bytes.size());
  if (receives_ == 0) return Outcome::kGoOn;  // nobody receives it
  const ClientType client = stage_.assoc().findClientType(receive.sender->sin_addr);
  if (client == CLIENT_ZWAVE) check_.zwaveReceived(receive.buffer);
  if (client == CLIENT_ZIGBEE) check_.zigbeeReceived(receive.buffer);
  return Outcome::kDatagram;
}

Player::Outcome Player::failReceive(Receive& receive) {
  receive.error = kReceiveErrors[script_.choose(std::size(kReceiveErrors))];
  return receives_ == 0 ? Outcome::kGoOn : Outcome::kFailure;
}

void Player::armFault() {
  constexpr std::size_t faults = static_cast<std::size_t>(Fault::kSleepsEndEarly) + 1;
  faults_ |= bit(static_cast<Fault>(script_.choose(faults)));
  faultError_ = kErrors[script_.choose(std::size(kErrors))];
}

// Fields and globals that a front end may write; its texts need not end.
void Player::writeFields() {
  TembraAssociation& assoc = stage_.assoc();
  switch (script_.choose(4)) {
    case 0:
      assoc.assocState = script_.smallNumber();
      return check_.stateWritten(assoc.assocState);
    case 1:
      std::memset(cmdtype, script_.byte(), sizeof cmdtype);
      return check_.textsWritten();
    case 2:
      std::memset(assoc.devName, script_.byte(), sizeof assoc.devName);
      std::memset(assoc.devLocation, script_.byte(), sizeof assoc.devLocation);
      std::memset(assoc.removedName, script_.byte(), sizeof assoc.removedName);
      return check_.textsWritten();
    default:
      const auto text = script_.take(script_.byte());
      settings_.assign(text.begin(), text.end());
  }
}

void Player::changeDatabase() {
  switch (static_cast<Change>(script_.choose(kChanges))) {
    case Change::kPutDevice:
      return putDevice();
    case Change::kPutRecord:
      return putRecord();
    case Change::kDrop:
      return DatabaseWriter().drop(std::to_string(script_.byte()));
    case Change::kRemove:
      return removeDatabaseFile();
    case Change::kCut:
      return cutDatabaseFile(script_.word());
    case Change::kLengthen:
      return lengthenDatabaseFile();
    case Change::kRubbish:
      writeDatabaseFile(script_.take(1));
  }
}

void Player::putDevice() {
  DeviceRecord device{};
  device.id = script_.smallNumber();
  device.radioKind = script_.smallNumber();
  device.zwaveNode = script_.byte();
  device.zigbeeAddress = script_.word();
  setField(device.typeName, kTypeNames[script_.choose(std::size(kTypeNames))]);
  setField(device.name, script_.take(script_.word() % (sizeof device.name + 1)));
  const auto* bytes = reinterpret_cast<const std::uint8_t*>(&device);
  DatabaseWriter().put(std::to_string(device.id), Bytes(bytes, sizeof device));
}

void Player::putRecord() {
  const auto key = script_.take(script_.byte() % 16U);
  const auto value = script_.take(script_.byte());
  DatabaseWriter().put(std::string(key.begin(), key.end()), value);
}

void Player::sent(const Send& send) {
  if (!frontEnd_.sendsOwnBytes) checkOwnSend(send);
}

void Player::heard(const AssocEvent& /*event*/) {
  if (!std::exchange(callInCallback_, false) || callbacks_ == kMostNested) return;
  ++callbacks_;
  makeCall(frontEnd_);
  --callbacks_;
}

void Player::logged() {
  if (!std::exchange(callInLogger_, false) || inLogger_) return;
  inLogger_ = true;
  makeCall(frontEnd_);
  inLogger_ = false;
}

// From the log no thread is started: the log may be written while the library has the database open, and another
// thread's script would change the database.
bool Player::strikes(Fault fault) {
  if (fault == Fault::kThread && (inLogger_ || receives_ == kMostNested)) return true;
  if ((faults_ & bit(fault)) == 0) return false;
  faults_ &= ~bit(fault);
  errno = faultError_;
  return true;
}

}  // namespace fuzz
