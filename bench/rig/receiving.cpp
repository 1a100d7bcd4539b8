#include "rig/receiving.h"

#include <sched.h>
#include <sys/socket.h>

#include <cstdlib>
#include <cstring>
#include <stdexcept>

namespace bench {
namespace {

// A wait that asks the kernel for nothing but its turn: nobody has to be woken.
void awaitTrue(const std::atomic<bool>& condition) {
  while (!condition.load(std::memory_order_acquire)) sched_yield();
}

constexpr int kReceiveBuffer = 8 << 20;  // the kernel gives what it allows

constexpr const char* kBareAddress = "127.255.255.4:8889";

LibraryReceiving* theLibrary = nullptr;

// Opening runs the router's settings command.
TembraAssociation& inReachOfCommands() {
  setenv("PATH", TEMBRA_COMMANDS ":/usr/bin:/bin", 1);
  return *TembraAssociation::LCDAssocInit();
}

}  // namespace

void Turnstile::awaitArrival() const { awaitTrue(arrived_); }

void Turnstile::letGo() { released_.store(true, std::memory_order_release); }

double Turnstile::awaitEnd() {
  awaitTrue(ended_);
  arrived_ = false;
  released_ = false;
  ended_ = false;
  return secondsBetween(from_, to_);
}

void Turnstile::pass(int number) {
  if (number == kOpeningGate) {
    arrived_.store(true, std::memory_order_release);
    while (!released_.load(std::memory_order_acquire)) {
    }
    from_ = Clock::now();
  } else if (number == kClosingGate) {
    to_ = Clock::now();
    ended_.store(true, std::memory_order_release);
  }
}

LibraryReceiving::LibraryReceiving() : assoc_(inReachOfCommands()) {
  theLibrary = this;
  assoc_.registerAssocEventCB(&onEvent);
  if (assoc_.checkAssocConnection() != 0) throw std::runtime_error("the connection cannot be opened");
  setsockopt(assoc_.sock, SOL_SOCKET, SO_RCVBUF, &kReceiveBuffer, sizeof kReceiveBuffer);
}

LibraryReceiving::~LibraryReceiving() {
  assoc_.registerAssocEventCB(nullptr);
  assoc_.closeAssocConnection();
}

// Puts the service back into the state in which the next datagram is to find it.
void LibraryReceiving::onEvent(AssocEvent* event) {
  if (event->code == EVENT_NEST_44) {
    NestAnswer answer;
    std::memcpy(&answer, event->payload, sizeof answer);
    theLibrary->turnstile().pass(answer.value);
  }
  theLibrary->assoc_.assocState = theLibrary->state_.load(std::memory_order_relaxed);
  theLibrary->tell();
}

BareReceiving::BareReceiving() : socket_(kBareAddress), address_(addressOf(kBareAddress)) {
  setsockopt(socket_.descriptor(), SOL_SOCKET, SO_RCVBUF, &kReceiveBuffer, sizeof kReceiveBuffer);
  thread_ = std::thread([this] { run(); });
}

// The next datagram ends the loop: this empty one, or, where the socket is too full to take it, one that waits.
BareReceiving::~BareReceiving() {
  ending_ = true;
  sendto(socket_.descriptor(), nullptr, 0, 0, reinterpret_cast<const sockaddr*>(&address_), sizeof address_);
  thread_.join();
}

void BareReceiving::prepareFor(const Datagram& datagram) {
  answerTo_ = Daemons::addressOfServer(datagram.answerTo);
  answerSize_ = 0;
  if (datagram.answerTo == SERVER_ZIGBEE) answerSize_ = sizeof(ZigbeeCommand);
  if (datagram.answerTo == SERVER_ZWAVE) answerSize_ = sizeof(ZwaveCommand);
  entries_ = datagram.entries;
}

void BareReceiving::run() {
  unsigned char buffer[4096] = {};
  sockaddr_in sender{};
  for (;;) {
    const timeval wait = {180, 0};
    setsockopt(socket_.descriptor(), SOL_SOCKET, SO_RCVTIMEO, &wait, sizeof wait);
    socklen_t length = sizeof sender;
    const ssize_t size =
        recvfrom(socket_.descriptor(), buffer, sizeof buffer, 0, reinterpret_cast<sockaddr*>(&sender), &length);
    if (ending_.load(std::memory_order_relaxed)) return;
    handle(buffer, size);
  }
}

// What a datagram makes necessary: the answer that is sent, and the router's tokenizer for the texts in it.
void BareReceiving::handle(const unsigned char* bytes, ssize_t size) {
  NestAnswer answer{};
  if (size == sizeof answer) std::memcpy(&answer, bytes, sizeof answer);
  if (answer.value != 0) {
    turnstile().pass(answer.value);
  } else if (answerSize_ != 0) {
    sendto(socket_.descriptor(), bytes, answerSize_, 0, reinterpret_cast<const sockaddr*>(&answerTo_),
           sizeof answerTo_);
  }
  for (int i = 0; answer.value == 0 && i < entries_; ++i) {
    const char* json = reinterpret_cast<const HueAnswer*>(bytes)->entries[i].json;
    JsonToken* tokens = parse_json2(json, static_cast<int>(std::strlen(json)));
    find_json_token(tokens, "id");
    find_json_token(tokens, "internalipaddress");
    std::free(tokens);
  }
  tell();
}

double drain(Receiving& receiving, const Daemons& daemons, const Datagram& datagram, int count) {
  const sockaddr_in to = receiving.address();
  const UdpSocket& gate = daemons.at(SERVER_NEST);
  receiving.prepareFor(datagram);
  gate.send(shortDatagram(kOpeningGate).bytes, to);
  receiving.turnstile().awaitArrival();
  for (int i = 0; i < count; ++i) daemons.at(datagram.sender).send(datagram.bytes, to);
  gate.send(shortDatagram(kClosingGate).bytes, to);
  receiving.turnstile().letGo();
  const double seconds = receiving.turnstile().awaitEnd();
  daemons.drain();
  return seconds / (count + 1);
}

}  // namespace bench
