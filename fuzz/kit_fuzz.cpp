// Operations of the front-end kit. First the library makes its events of a script's datagrams, then the kit gets them,
// with choices, cancels and time-outs in between: whatever they are, each event and each state fits its JSON schema,
// and the operation has one end.
#include <arpa/inet.h>
#include <tembra/globals.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <string>
#include <utility>
#include <vector>

#include "kit/check_json.h"
#include "kit/surroundings.h"
#include "operations.h"
#include "support/database_file.h"
#include "support/invariant.h"
#include "support/script.h"
#include "support/stage.h"
#include "texts.h"

namespace {

using fuzz::require;
using fuzz::Script;
using tembra::frontend::Command;
using tembra::frontend::Inbox;
using tembra::frontend::LibraryEvent;
using tembra::frontend::Outbox;

constexpr const char* kDaemons[] = {"127.255.255.254", "127.255.255.253", "127.255.255.252", "127.255.255.251",
                                    "127.0.0.66"};
constexpr int kMostDatagrams = 12;
constexpr int kMostWaits = 40;

std::string plainText(Script& script, std::size_t longest) {
  const fuzz::CallersText text = script.text();
  const std::string said = text.get() == nullptr ? "" : text.get();
  return said.size() <= longest && tembra::frontend::isPlainText(said) ? said : "";
}

/// What the front end asks for.
Command commandOf(Script& script) {
  Command command;
  command.operation = TEMBRA_OPERATION_ADD + static_cast<int>(script.choose(TEMBRA_OPERATION_DEVICES));
  command.what = 1 + static_cast<int>(script.choose(4));
  command.target = command.operation == TEMBRA_OPERATION_NEST_LINK ? plainText(script, 247) : "02:a1:b2:0c:00:01";
  command.text = plainText(script, 49);
  return command;
}

/// The library's own part: what it makes of the datagrams.
class Library : public fuzz::Router {
 public:
  Library(Script& script, int operation) : script_(script), operation_(operation) {}

  std::vector<std::unique_ptr<LibraryEvent>> takeEvents() { return std::move(events_); }

  ssize_t receive(int /*descriptor*/, unsigned char* buffer, sockaddr_in& sender) override {
    TembraAssociation& assoc = fuzz::Stage::current()->assoc();
    if (received_ == 0) command(assoc);
    const bool isOver = received_++ == kMostDatagrams || script_.atEnd();
    const std::size_t what = isOver ? 0 : script_.choose(8);
    if (what == 0) assoc.closeAssocConnection();
    if (assoc.running == 0) return 0;
    if (what == 1) return errno = EAGAIN, -1;
    sender.sin_family = AF_INET;
    sender.sin_addr.s_addr = inet_addr(kDaemons[script_.choose(std::size(kDaemons))]);
    const auto bytes = script_.take(script_.word() % (fuzz::kReceiveBufferSize + 1));
    std::ranges::copy(bytes, buffer);
    return static_cast<ssize_t>(bytes.size());
  }

  void heard(const AssocEvent& event) override {
    if (isReceiving_) events_.push_back(tembra::frontend::snapshot(event));
  }
  void sent(const fuzz::Send& send) override { isHandedOver_ = isHandedOver_ || send.length == sizeof(HaNotice); }

  void stopReceiving() { isReceiving_ = isHandedOver_ = false; }
  [[nodiscard]] bool isHandedOver() const { return isHandedOver_; }

 private:
  // So that the library takes the answers for what they are.
  void command(TembraAssociation& assoc) const {
    char text[] = "02:a1:b2:0c:00:01";
    if (operation_ == TEMBRA_OPERATION_ADD) assoc.addDevZigbeeZwave();
    if (operation_ == TEMBRA_OPERATION_REMOVE) assoc.removeDevZigbeeZwave();
    if (operation_ >= TEMBRA_OPERATION_HUE_DISCOVER) assoc.Hue_addBridge(text);
    if (operation_ >= TEMBRA_OPERATION_NEST_STATUS) assoc.Nest_remove();
  }

  Script& script_;
  const int operation_;
  std::vector<std::unique_ptr<LibraryEvent>> events_;
  int received_ = 0;
  bool isReceiving_ = true;
  bool isHandedOver_ = false;
};

/// One operation of the kit.
class Operation : public fuzz::Surroundings {
 public:
  Operation(Script& script, const Command& command, Library& library)
      : script_(script), command_(command), library_(library), flags_(script.byte()), when_(script.byte()) {}

  void play(TembraAssociation& assoc) {
    start();
    tembra::frontend::Runner runner(inbox_);
    const auto options = tembra::frontend::sized<tembra_options>();
    tembra::frontend::Watching watching(options, outbox_, inbox_);
    int socket = 0;
    outbox_.begin(command_.operation);
    tembra::frontend::Session session(assoc, outbox_, inbox_, runner, watching, has(0), socket);
    session.finish(tembra::frontend::endOf(session, command_));
    outbox_.clear();
    require(has(0) || socket == 0, "a connection that is not kept is closed");
    assoc.closeAssocConnection();
    over_ = true;
  }

  void check() {
    unsigned number = 0;
    bool hasEnded = false;
    while (const auto event = outbox_.next(0)) {
      require(event->head.number == ++number && !hasEnded, "one end, and nothing behind it");
      hasEnded = std::holds_alternative<tembra_ended>(event->detail);
      fuzz::checkEventJson(event->json);
    }
    require(hasEnded, "every operation ends");
  }

  [[nodiscard]] bool opens() const override { return !has(1); }
  [[nodiscard]] bool settles() const override { return !has(2); }
  [[nodiscard]] bool listens(int server) const override { return !has(3) || server == SERVER_ZIGBEE; }

  void waiting() override {
    if (over_) return;
    const tembra_state state = outbox_.state();
    if (std::exchange(phase_, state.phase) != state.phase) fuzz::checkStateJson(tembra::frontend::stateJson(state));
    ++waits_;
    if (library_.isHandedOver() && !has(4)) store();
    if (state.found.size != 0 && !has(5)) choose(state.found);
    if (waits_ == when_ && has(6)) fuzz::Stage::current()->assoc().closeAssocConnection();
    if ((waits_ == when_ && has(7)) || waits_ == kMostWaits) static_cast<void>(inbox_.cancel());
  }

 private:
  [[nodiscard]] bool has(int flag) const { return (flags_ >> flag & 1) != 0; }

  void start() {
    require(inbox_.start(command_) && inbox_.awaitCommand().has_value(), "the operation starts");
    for (auto& event : library_.takeEvents()) inbox_.hear(std::move(event));
    library_.stopReceiving();
  }

  // As tembra_frontend_finish checks it.
  void choose(const tembra_found& found) {
    require(found.choice_count >= 1 && found.choices[0] == found.type, "the proposal is the first choice");
    const int type = found.choices[script_.choose(static_cast<std::size_t>(found.choice_count))];
    const std::string name = plainText(script_, found.name_room);
    if (outbox_.takeOffer(name)) inbox_.choose({type, name, plainText(script_, found.place_room)});
  }

  // As the HA server may store it.
  void store() {
    auto record = script_.read<DeviceRecord>();
    record.id = DevId;
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(&record);
    fuzz::DatabaseWriter().put(std::to_string(DevId), fuzz::Bytes(bytes, sizeof record));
    library_.stopReceiving();
  }

  Script& script_;
  const Command& command_;
  Library& library_;
  Inbox inbox_;
  Outbox outbox_;
  const unsigned flags_;
  const int when_;
  int waits_ = 0;
  int phase_ = TEMBRA_PHASE_NONE;
  bool over_ = false;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Script script(data, size);
  const Command command = commandOf(script);
  Library library(script, command.operation);
  const fuzz::Stage stage(library);
  TembraAssociation& assoc = stage.assoc();
  assoc.clientRole = script.choose(2) == 0 ? ROLE_LCD : ROLE_WEB_SERVER;
  require(assoc.checkAssocConnection() == 0 && assoc.sock == 0, "the connection opens, and is closed at the end");
  Operation operation(script, command, library);
  operation.play(assoc);
  operation.check();
  return 0;
}
