#include "kit/router.h"

#include <gtest/gtest.h>
#include <net/if.h>

#include <cstdlib>
#include <cstring>
#include <mutex>

namespace kit {
namespace {

void record(AssocEvent* event) {
  trace().addEvent({*event, stateText(), std::this_thread::get_id()});
  std::function<void(AssocEvent*)> hook;
  {
    const std::lock_guard<std::mutex> lock(stage()->mutex);
    hook = stage()->eventHook;
  }
  if (hook) hook(event);
}

// A test that ran outside would meet the machine's real daemons and database, and the object of an earlier test.
void insistOnIsolation() {
  struct if_nameindex* interfaces = if_nameindex();
  const bool onlyLoopback = interfaces != nullptr && interfaces[0].if_index != 0 &&
                            std::strcmp(interfaces[0].if_name, "lo") == 0 && interfaces[1].if_index == 0;
  if_freenameindex(interfaces);
  static bool used = false;
  if (onlyLoopback && !used) {
    used = true;
    return;
  }
  fputs(
      "run tests by ctest, or a single one by `tembra-isolate PROGRAM --gtest_filter=SUITE.TEST`: each needs "
      "namespaces and a process of its own\n",
      stderr);
  std::_Exit(EXIT_FAILURE);
}

Clock isolated(Clock clock) {
  insistOnIsolation();
  return clock;
}

}  // namespace

Router::Router(Clock clock)
    : stage_(isolated(clock)),
      zwave_(stage_, "127.255.255.254", 8888),
      zigbee_(stage_, "127.255.255.253", 8888),
      hue_(stage_, "127.255.255.252", 8888),
      nest_(stage_, "127.255.255.251", 8888),
      ha_(stage_, "127.255.255.1", 9999) {
  nvram_.answerWith("echo 3");
  setStage(&stage_);
}

Router::~Router() {
  onEvent(nullptr);
  onLog(nullptr);
  onSend(nullptr);
  if (TembraAssociation::singleton != nullptr) close();
  setStage(nullptr);
}

TembraAssociation& Router::assoc() {
  if (TembraAssociation::singleton == nullptr) TembraAssociation::LCDAssocInit();
  return *TembraAssociation::singleton;
}

TembraAssociation& Router::connect(Role role) {
  TembraAssociation& object = *role();
  registerCallback();
  EXPECT_EQ(open(), 0);
  forget();
  return object;
}

void Router::registerCallback() { assoc().registerAssocEventCB(&record); }

int Router::open() {
  const int result = assoc().checkAssocConnection();
  if (stage_.clock == Clock::kVirtual) settle();
  return result;
}

void Router::close() {
  assoc().closeAssocConnection();
  stage_.kernel.awaitEnd();
}

void Router::advance(long seconds) { stage_.kernel.advance(seconds); }
void Router::settle() { stage_.kernel.settle(); }
void Router::interruptReceive(int error) { stage_.kernel.interruptReceive(error); }
void Router::awaitSleeper() { stage_.kernel.awaitSleeper(); }
void Router::interruptSleep(unsigned remaining) { stage_.kernel.interruptSleep(remaining); }
void Router::hurry(int times) { stage_.haste = times; }

Peer Router::from(const std::string& address, int port) { return {stage_, address, port}; }

void Router::fail(Call call, int error, int times, int spared) { faults().order(call, error, times, spared); }

void Router::nameType(int type, const std::string& name) {
  const std::lock_guard<std::mutex> lock(stage_.mutex);
  stage_.typeNames[type] = name;
}

void Router::numberType(const std::string& name, int type) {
  const std::lock_guard<std::mutex> lock(stage_.mutex);
  stage_.typeNumbers[name] = type;
}

void Router::loggerThrows(bool throws) { stage_.loggerThrows = throws; }

void Router::onEvent(std::function<void(AssocEvent*)> hook) {
  const std::lock_guard<std::mutex> lock(stage_.mutex);
  stage_.eventHook = std::move(hook);
}

void Router::onLog(std::function<void(const std::string&)> hook) {
  const std::lock_guard<std::mutex> lock(stage_.mutex);
  stage_.logHook = std::move(hook);
}

void Router::onSend(std::function<void(const std::string&)> hook) {
  const std::lock_guard<std::mutex> lock(stage_.mutex);
  stage_.sendHook = std::move(hook);
}

void Router::watch(unsigned kinds) { trace().watch(kinds); }
std::string Router::takeTrace() { return trace().takeLines(); }
std::vector<Datagram> Router::takeSends() { return trace().takeSends(); }
std::vector<RecordedEvent> Router::takeEvents() { return trace().takeEvents(); }
void Router::forget() { trace().forget(); }
std::string Router::state() const { return stateText(); }

}  // namespace kit
