// An add or a remove while it runs.
#ifndef TEMBRA_CLI_OPERATION_H
#define TEMBRA_CLI_OPERATION_H

#include <functional>
#include <optional>
#include <string>

#include "connection.h"
#include "context.h"
#include "countdown.h"
#include "event_inbox.h"

namespace tembra::cli {

/// Cancels on both radios when it is left before it has ended, for whatever reason.
class Operation {
 public:
  Operation(const Context& context, TembraAssociation& service);
  ~Operation();
  Operation(const Operation&) = delete;
  Operation& operator=(const Operation&) = delete;

  [[nodiscard]] TembraAssociation& service() const { return service_; }
  [[nodiscard]] const Context& context() const { return context_; }

  /// Gives the command that starts it; `call` is its name. Throws Failure when it cannot be sent.
  void start(void (TembraAssociation::*command)(), const std::string& call);

  /// What the user is told to be waiting for.
  void waitsFor(const std::string& what) { what_ = what; }

  /// Waits for the next event. Throws Interrupted, and Failure when even the library's time-out does not come.
  [[nodiscard]] HeardEvent nextEvent();

  /// The next event if there is one by now.
  [[nodiscard]] std::optional<HeardEvent> eventSoFar();

  /// Waits until the library reports by its `idle` flag that nothing is under way, or for an event.
  [[nodiscard]] std::optional<HeardEvent> eventBeforeIdle();

  /// Runs a call of the library that may have to wait for the device database; `call` is its text.
  void run(const std::string& call, const std::function<void(TembraAssociation&)>& function);

  /// Waits until the library has written what it writes about an event behind the callback, which must not come after
  /// our next call.
  void letLibrarySettle();

  [[nodiscard]] int secondsLeft() { return countdown_.secondsLeft(); }

  /// Nothing is left to cancel.
  void ended() { running_ = false; }

 private:
  void waitBriefly();
  /// Throws Failure when what the call sends cannot be sent.
  void callSending(const std::function<void()>& call);

  const Context& context_;
  TembraAssociation& service_;
  Countdown countdown_;
  std::string what_;
  bool running_ = false;
  bool reachesServers_ = true;  ///< false: it failed to send, which has been told
};

}  // namespace tembra::cli

#endif
