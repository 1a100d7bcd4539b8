#include "campaign/plain_front_end.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/signalfd.h>
#include <tembra/assoc.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <deque>
#include <fstream>
#include <initializer_list>
#include <map>
#include <mutex>

namespace campaign {
namespace {

constexpr int kTickMs = 100;
constexpr int kIpTickMs = 50;
constexpr int kSettlingMs = 100;
constexpr int kClosingMs = 2000;

struct Interrupted {};

struct Heard {
  AssocEvent event;
  DevType proposedType;
};

struct Inbox {
  std::mutex mutex;
  std::deque<Heard> events;
  int descriptor = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK | EFD_SEMAPHORE);
};

// Never destroyed: the library's thread may deliver an event while the process ends.
Inbox& inbox() {
  static auto* const kInbox = new Inbox;
  return *kInbox;
}

void hear(AssocEvent* event) {
  const std::lock_guard lock(inbox().mutex);
  inbox().events.push_back({*event, static_cast<DevType>(TembraAssociation::singleton->classifiedType)});
  eventfd_write(inbox().descriptor, 1);
}

DeviceReport reportOf(const Heard& heard) {
  DeviceReport report;
  std::memcpy(&report, heard.event.payload, sizeof report);
  return report;
}

TembraAssociation& serviceAs(const std::string& role) {
  static const std::map<std::string, TembraAssociation* (*)()> kRoles = {
      {"web", TembraAssociation::webServerAssocInit},   {"lcd", TembraAssociation::LCDAssocInit},
      {"cloud", TembraAssociation::cloudappsAssocInit}, {"mesh", TembraAssociation::meshServerAssocInit},
      {"free1", TembraAssociation::FreeUsr1AssocInit},  {"free2", TembraAssociation::FreeUsr2AssocInit},
  };
  return *kRoles.at(role)();
}

bool isServed(const sockaddr_in& server) {
  char place[32];
  std::snprintf(place, sizeof place, " %08X:%04X ", server.sin_addr.s_addr,
                static_cast<unsigned>(ntohs(server.sin_port)));
  std::ifstream table("/proc/net/udp");
  for (std::string row; std::getline(table, row);) {
    if (row.find(place) != std::string::npos) return true;
  }
  return false;
}

int radiosNumber(const std::string& word) {
  if (word == "zigbee") return 1;
  if (word == "zwave") return 2;
  return word == "all" ? 4 : 3;
}

bool isIn(int code, std::initializer_list<int> codes) { return std::ranges::find(codes, code) != codes.end(); }

class Operation {
 public:
  Operation(const Step& step, const std::function<void(int)>& onEvent)
      : step_(step), onEvent_(onEvent), service_(serviceAs(step.role)) {
    sigset_t hangUp;
    sigemptyset(&hangUp);
    sigaddset(&hangUp, SIGHUP);
    signals_ = signalfd(-1, &hangUp, SFD_CLOEXEC | SFD_NONBLOCK);
  }
  Operation(const Operation&) = delete;
  Operation& operator=(const Operation&) = delete;

  ~Operation() {
    close(signals_);
    const std::lock_guard lock(inbox().mutex);
    eventfd_t one = 0;
    while (!inbox().events.empty()) {  // a process of its own would take with it what it did not fetch
      eventfd_read(inbox().descriptor, &one);
      inbox().events.pop_front();
    }
  }

  End run() {
    if (!somebodyIsThere()) return End::kNoConnection;
    service_.registerAssocEventCB(hear);
    if (service_.checkAssocConnection() != 0) return End::kNoConnection;
    socket_ = service_.sock;
    End end = End::kInterrupted;
    try {
      end = perform();
    } catch (const Interrupted&) {
      if (cancellable_) service_.sendCancelTo(cancel_both);
    }
    service_.closeAssocConnection();
    return end;
  }

 private:
  [[nodiscard]] bool somebodyIsThere() const {
    if (step_.goal >= Goal::kNestLink) return isServed(adr_nest);
    if (step_.goal >= Goal::kHueDiscover) return isServed(adr_hueserver);
    if (step_.word == "zwave") return isServed(adr_ozw);
    if (step_.word == "zigbee") return isServed(adr_zigbee);
    return isServed(adr_ozw) || isServed(adr_zigbee);
  }

  End perform();
  End add();
  End finishAdd(const Heard& created);
  End remove();
  End reset();
  End askIp(const std::function<void()>& command, std::initializer_list<int> done);
  [[nodiscard]] std::optional<Heard> answer();

  // ---- Waiting ----
  void wait(int milliseconds, bool forEvents = true) {
    std::array<pollfd, 2> watched = {pollfd{signals_, POLLIN, 0},
                                     pollfd{forEvents ? inbox().descriptor : -1, POLLIN, 0}};
    poll(watched.data(), watched.size(), milliseconds);
    signalfd_siginfo taken{};
    if (read(signals_, &taken, sizeof taken) > 0) throw Interrupted{};
  }

  std::optional<Heard> fetch() {
    const std::lock_guard lock(inbox().mutex);
    if (inbox().events.empty()) return std::nullopt;
    eventfd_t one = 0;
    eventfd_read(inbox().descriptor, &one);
    const Heard heard = inbox().events.front();
    inbox().events.pop_front();
    onEvent_(heard.event.code);
    return heard;
  }

  Heard next() {
    while (true) {
      if (const auto heard = fetch()) return *heard;
      wait(kTickMs);
    }
  }

  static bool isIdle() { return __atomic_load_n(&idle, __ATOMIC_ACQUIRE) != 0; }
  [[nodiscard]] bool isOpen() const { return fcntl(socket_, F_GETFD) >= 0; }

  const Step& step_;
  const std::function<void(int)>& onEvent_;
  TembraAssociation& service_;
  int signals_ = -1;
  int socket_ = -1;
  bool cancellable_ = false;
};

End Operation::add() {
  cancellable_ = true;
  service_.addDevZigbeeZwave();
  while (true) {
    const Heard heard = next();
    const int code = heard.event.code;
    if (isIn(code, {EVENT_TIMEOUT, EVENT_ALREADY_ADDED, EVENT_ADD_FAILED})) return End::kFailed;
    if (isIn(code, {EVENT_SELECT_TYPE, EVENT_CREATED})) return finishAdd(heard);
  }
}

// Takes the first type that is offered. Waits before that: behind its callback the library still writes something.
End Operation::finishAdd(const Heard& created) {
  const DeviceReport report = reportOf(created);
  auto type = static_cast<DevType>(report.type);
  if (created.event.code == EVENT_SELECT_TYPE) type = report.subTypes[0];
  if (created.event.code == EVENT_CREATED && created.event.source == SERVER_ZWAVE) type = created.proposedType;
  wait(kSettlingMs, false);
  service_.setDevType(type);
  while (const auto heard = fetch()) {
    if (heard->event.code == EVENT_TIMEOUT) return End::kFailed;
  }
  std::string name = step_.name;
  std::string place = "Default";
  service_.setDevName(name.data());
  service_.setDevLocation(place.data());
  return service_.addingDone() == 0 ? End::kDone : End::kFailed;
}

// That a radio has confirmed the removal no event tells, only `idle`.
End Operation::remove() {
  cancellable_ = true;
  service_.removeDevZigbeeZwave();
  int code = 0;
  while (!isIn(code, {EVENT_REMOVED, EVENT_REMOVED_UNKNOWN})) {
    code = next().event.code;
    if (code == EVENT_TIMEOUT) return End::kFailed;
  }
  while (true) {
    const bool over = isIdle();
    if (const auto heard = fetch()) {
      if (heard->event.code == EVENT_TIMEOUT) return End::kFailed;
    } else if (over) {
      return code == EVENT_REMOVED ? End::kDone : End::kFailed;
    } else {
      wait(kTickMs);
    }
  }
}

End Operation::reset() {
  service_.doResetFor(static_cast<reset_type>(radiosNumber(step_.word)));
  wait(0, false);
  return End::kDone;
}

// Nothing when the library waits no longer and there is none.
std::optional<Heard> Operation::answer() {
  const bool hue = step_.goal < Goal::kNestLink;
  while (true) {
    const bool over = isIdle() || !isOpen();
    while (const auto heard = fetch()) {
      const int code = heard->event.code;
      const bool fromHue = code >= EVENT_HUE_BRIDGES && code <= EVENT_HUE_FAILED;
      const bool fromNest = code >= EVENT_NEST_41 && code <= EVENT_NEST_46;
      if (code == EVENT_TIMEOUT || (hue ? fromHue : fromNest)) return heard;
    }
    if (over) return std::nullopt;
    wait(kIpTickMs);
  }
}

// The library closes the web server's connection after every answer, a moment behind the event.
End Operation::askIp(const std::function<void()>& command, std::initializer_list<int> done) {
  command();
  const auto heard = answer();
  if (heard && heard->event.code == EVENT_TIMEOUT) return End::kFailed;
  for (int waited = 0; step_.role == "web" && isOpen() && waited < kClosingMs; waited += kIpTickMs) {
    wait(kIpTickMs, false);
  }
  return heard && isIn(heard->event.code, done) ? End::kDone : End::kFailed;
}

End Operation::perform() {
  std::string mac = kBridgeMac;
  std::string text = step_.word;
  std::string code = "code";
  switch (step_.goal) {
    case Goal::kAdd:
      return add();
    case Goal::kRemove:
      return remove();
    case Goal::kCancel:
      service_.sendCancelTo(static_cast<cancel_type>(radiosNumber(step_.word)));
      return End::kDone;
    case Goal::kReset:
      return reset();
    case Goal::kHueDiscover:
      return askIp([&] { service_.Hue_initiateAdd(); }, {EVENT_HUE_BRIDGES});
    case Goal::kHueAdd:
      return askIp([&] { service_.Hue_addBridge(mac.data()); }, {EVENT_HUE_ADDED});
    case Goal::kHueBulb:
      return askIp([&] { service_.Hue_addDev(mac.data(), text.data()); }, {EVENT_HUE_BULB_ADDED});
    case Goal::kHueRefresh:
      text.clear();
      return askIp([&] { service_.Hue_refreshBridge(mac.data(), text.data()); }, {EVENT_HUE_DONE, EVENT_HUE_DONE_2});
    case Goal::kHueRemove:
      return askIp([&] { service_.Hue_remove(mac.data()); }, {EVENT_HUE_DONE, EVENT_HUE_DONE_2});
    case Goal::kNestLink:
      return askIp([&] { service_.Nest_add(code.data()); }, {EVENT_NEST_41, EVENT_NEST_45});
    case Goal::kNestUnlink:
      return askIp([&] { service_.Nest_remove(); }, {EVENT_NEST_43, EVENT_NEST_45});
  }
  return End::kFailed;
}

}  // namespace

End operate(const Step& step, const std::function<void(int code)>& onEvent) { return Operation(step, onEvent).run(); }

}  // namespace campaign
