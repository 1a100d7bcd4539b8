#include "ip_operation.h"

#include <tembra/globals.h>

#include <algorithm>
#include <optional>

#include "failure.h"
#include "operation.h"
#include "servers.h"
#include "words/event_names.h"

namespace tembra::cli {
namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

constexpr milliseconds kBetweenLooks{50};
constexpr milliseconds kLongestClosing{2000};
constexpr int kLongestSilenceSeconds = 60;  // after the moment when the library should have reported a time-out

std::string serverName(ServerType server) { return "the " + words::sourceName(server) + " server"; }

bool concerns(const AssocEvent& event, ServerType server) {
  const words::EventRow* row = words::findEvent(event.code);
  return event.code == EVENT_TIMEOUT || (row != nullptr && row->sources == words::sourceName(server));
}

/// The command while it runs. No event says that the library does not know an answer, or that it closes
/// the connection. So this also looks at the library's `idle` flag and at its socket.
class IpOperation {
 public:
  IpOperation(const Context& context, TembraAssociation& service, const IpCommand& command)
      : context_(context), command_(command), connection_(context, service), operation_(context, service) {}

  void give() {
    operation_.waitsFor(command_.waitsFor);
    operation_.run(command_.call, command_.give);
    if (!command_.advice.empty()) context_.display.note(command_.advice);
  }

  // Nothing when the library waits no longer and there is none.
  [[nodiscard]] std::optional<HeardEvent> answer() {
    while (true) {
      const bool over = libraryWaitsNoLonger();
      while (auto heard = operation_.eventSoFar()) {
        if (concerns(heard->event, command_.server)) return heard;
      }
      if (over) return std::nullopt;
      context_.display.waiting(command_.waitsFor, operation_.secondsLeft());
      context_.attention.waitForEvent(kBetweenLooks);
    }
  }

  // The library closes the web server's connection after every answer, a moment behind the event.
  void tellClosing() const {
    if (context_.options.role != "web") return;
    const auto deadline = steady_clock::now() + kLongestClosing;
    while (connection_.isOpen() && steady_clock::now() < deadline) context_.attention.pause(kBetweenLooks);
    if (!connection_.isOpen()) context_.display.note(kClosedForWebServer);
  }

 private:
  [[nodiscard]] bool libraryWaitsNoLonger() {
    const bool idleAgain = __atomic_load_n(&idle, __ATOMIC_ACQUIRE) != 0;
    return idleAgain || !connection_.isOpen() || operation_.secondsLeft() < -kLongestSilenceSeconds;
  }

  const Context& context_;
  const IpCommand& command_;
  Connection connection_;
  Operation operation_;
};

std::optional<HeardEvent> giveAndWait(const Context& context, IpOperation& operation, ServerType server) {
  try {
    operation.give();
    return operation.answer();
  } catch (const Interrupted&) {
    context.display.makeRoom();
    complain(serverName(server) + " cannot be told to stop and may still do it.");
    throw;
  }
}

std::string meaningOf(const AssocEvent& event) {
  const words::EventRow* row = words::findEvent(event.code);
  std::string text(row->name);
  return text.append(" (").append(row->meaning).append(")");
}

std::string whyNotDone(const AssocEvent& event, ServerType server, std::span<const Refusal> refusals) {
  const auto refusal = std::ranges::find(refusals, event.code, &Refusal::code);
  if (refusal != refusals.end()) return refusal->why;
  return serverName(server) + " gave the answer to another command: " + meaningOf(event) + ".";
}

}  // namespace

HeardEvent askServer(const Context& context, const IpCommand& command, std::span<const int> done,
                     std::span<const Refusal> refusals) {
  TembraAssociation& service = serviceAs(context.options.role);
  requireOneOf({command.server});
  IpOperation operation(context, service, command);
  const auto heard = giveAndWait(context, operation, command.server);
  const std::string noAnswer = "no answer that the library knows came from " + serverName(command.server);
  if (heard && heard->event.code == EVENT_TIMEOUT) throw Failure(kFailed, noAnswer + " in time.");
  operation.tellClosing();
  if (!heard) throw Failure(kFailed, noAnswer + ".");
  if (std::ranges::find(done, heard->event.code) == done.end()) {
    throw Failure(kFailed, whyNotDone(heard->event, command.server, refusals));
  }
  return *heard;
}

}  // namespace tembra::cli
