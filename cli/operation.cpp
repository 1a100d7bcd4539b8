#include "operation.h"

#include <tembra/service.h>

#include "failure.h"
#include "library_call.h"

namespace tembra::cli {
namespace {

using namespace std::chrono_literals;

constexpr auto kTick = 100ms;
constexpr int kLongestOverdueSeconds = 60;

bool libraryIsIdle() { return __atomic_load_n(&idle, __ATOMIC_ACQUIRE) != 0; }

}  // namespace

Operation::Operation(const Context& context, TembraAssociation& service) : context_(context), service_(service) {}

Operation::~Operation() {
  if (!running_) return;
  try {
    context_.display.command("sendCancelTo(cancel_both)");
  } catch (const Interrupted&) {
    // Nobody reads the display any more; the radios are told all the same.
  }
  Sending sending;
  service_.sendCancelTo(cancel_both);
  const auto why = sending.failure();
  if (!why || !reachesServers_) return;
  context_.display.makeRoom();
  complain("the radios cannot be told to stop (" + *why + ").");
}

void Operation::callSending(const std::function<void()>& call) {
  Sending sending;
  call();
  reachesServers_ = false;
  sending.require();
  reachesServers_ = true;
}

void Operation::start(void (TembraAssociation::*command)(), const std::string& call) {
  context_.display.command(call);
  running_ = true;
  callSending([this, command] { (service_.*command)(); });
}

void Operation::waitBriefly() {
  context_.display.waiting(what_, countdown_.secondsLeft());
  context_.attention.waitForEvent(kTick);
}

std::optional<HeardEvent> Operation::eventSoFar() {
  auto heard = fetchEvent();
  if (!heard) return heard;
  context_.display.event(*heard);
  return heard;
}

HeardEvent Operation::nextEvent() {
  while (countdown_.secondsLeft() > -kLongestOverdueSeconds) {
    if (auto heard = eventSoFar()) return *heard;
    waitBriefly();
  }
  throw Failure(kFailed, "the library does not even report a time-out; is the device database locked?");
}

std::optional<HeardEvent> Operation::eventBeforeIdle() {
  while (countdown_.secondsLeft() > -kLongestOverdueSeconds) {
    if (auto heard = eventSoFar()) return heard;
    if (libraryIsIdle()) return eventSoFar();
    waitBriefly();
  }
  throw Failure(kFailed, "the radio does not confirm the removal, and the library reports no time-out.");
}

void Operation::run(const std::string& call, const std::function<void(TembraAssociation&)>& function) {
  context_.display.command(call);
  callSending([this, &function] {
    runLibraryCall([&service = service_, function] { function(service); },
                   [this] {
                     context_.display.waiting(what_, countdown_.secondsLeft());
                     context_.attention.pause(kTick);
                   });
  });
}

void Operation::letLibrarySettle() {
  while (tembra_settle(kTick.count()) != 0) waitBriefly();
}

}  // namespace tembra::cli
