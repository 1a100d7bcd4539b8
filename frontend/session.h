// One operation from its start to its end: what every kind of operation needs.
#ifndef TEMBRA_FRONTEND_SESSION_H
#define TEMBRA_FRONTEND_SESSION_H

#include <tembra/service.h>

#include <exception>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "inbox.h"
#include "outbox.h"
#include "runner.h"
#include "watch/watching.h"

namespace tembra::frontend {

/// How much later than the library the kit ends an operation of which it hears nothing more.
inline constexpr std::chrono::seconds kGrace{30};

/// Thrown to end the operation.
struct End {
  tembra_outcome outcome;
  tembra_reason reason;
  int server = 0;
  int error = 0;
  int deviceId = 0;
  std::string deviceName;
};

[[nodiscard]] inline End done() { return {TEMBRA_DONE, TEMBRA_REASON_NONE, 0, 0, 0, {}}; }
[[nodiscard]] inline End failed(tembra_reason reason, int server = 0, int error = 0) {
  return {TEMBRA_FAILED, reason, server, error, 0, {}};
}
[[nodiscard]] inline End timedOut(tembra_reason reason, int server = 0) {
  return {TEMBRA_TIMED_OUT, reason, server, 0, 0, {}};
}

/// Thrown by every wait when the caller has cancelled.
struct Cancelled {};

/// The devices of the database; an error is an errno.
struct DeviceList {
  std::vector<tembra_device> devices;
  int error = 0;
};

class Session {
 public:
  /// @param socket the descriptor of the open connection, 0: none; kept from one operation to the next
  Session(TembraAssociation& service, Outbox& outbox, Inbox& inbox, Runner& runner, Watching& watching, bool keepOpen,
          int& socket);

  TembraAssociation& service() { return service_; }

  // ---- What is told ----
  void enter(tembra_phase phase, Milliseconds limit, const KnownDevice& device = {}) {
    outbox_.enter(phase, limit, device);
  }
  void enterWait(tembra_phase phase, const KnownDevice& device = {});  ///< its limit is the end of the library's wait
  void setRadio(int radio) { outbox_.setRadio(radio); }
  void offer(const tembra_found& found, int id, Milliseconds limit) { outbox_.offer(found, id, limit); }
  void tell(tembra_event_kind kind, const Detail& detail = {}) { watching_.publish(outbox_.emit(kind, detail)); }
  void warn(tembra_reason reason, int server, const std::string& why = {});
  void warnOf(tembra_reason reason, int deviceId, const std::string& deviceName);

  // ---- What is checked before the connection is opened ----
  void requireRadios();  ///< one at least; warns when only one runs
  void requireServer(ServerType server);
  DeviceList requireDatabase();  ///< the list may be damaged, of which it warns
  [[nodiscard]] DeviceList listDevices();

  // ---- What is done ----
  /// Opens the connection, anew when it is open, so that the library's wait begins now.
  void open();

  /// A call that may take long. Abandons it, and throws Cancelled, when the operation is cancelled meanwhile.
  template <typename Function>
  auto call(Function function) -> decltype(function());

  /// The same; does something else now and then meanwhile.
  template <typename Function, typename Meanwhile>
  auto call(Function function, Meanwhile meanwhile) -> decltype(function());

  /// A call that sends. Ends the operation when something cannot be sent.
  template <typename Function>
  void send(Function function);

  /// The next event of the library; nothing at that time, or when the user has chosen. Ends the operation when the
  /// connection is lost.
  [[nodiscard]] std::unique_ptr<LibraryEvent> nextEvent(Clock::time_point until);
  void pause(Clock::time_point until);  ///< drops what the library reports meanwhile
  [[nodiscard]] std::optional<Choice> takeChoice() { return inbox_.takeChoice(); }

  /// Whether the library waits for the next datagram and the kit has heard all that it reported.
  [[nodiscard]] bool isSettled();
  [[nodiscard]] bool hasEvents() const { return inbox_.hasEvents(); }
  void settle();

  /// Whether a cancel would come too late: what was sent may be done all the same.
  void setBeyondRecall(bool is) { isBeyondRecall_ = is; }
  /// The end that a cancel leads to now.
  [[nodiscard]] End cancelled() const;

  /// Ends the operation: stops the radios, closes the connection, tells the end.
  void finish(const End& end);

  [[nodiscard]] static bool libraryIsIdle();

 private:
  [[nodiscard]] bool callEnded();
  [[nodiscard]] bool isLost() const;
  void checkOpening(int result, const tembra_failure& before);
  static void checkSent(const tembra_failure& before);
  void close();
  bool isLateCallOver(Milliseconds longest);  ///< negative: waits without limit
  void closeLibrary();

  TembraAssociation& service_;
  Outbox& outbox_;
  Inbox& inbox_;
  Runner& runner_;
  Watching& watching_;
  const bool keepOpen_;
  int& socket_;
  bool callRuns_ = false;
  bool isBeyondRecall_ = false;
};

[[nodiscard]] tembra_failure lastFailure(tembra_failure_kind kind);
[[nodiscard]] DeviceList readDevices();

template <typename Function>
auto Session::call(Function function) -> decltype(function()) {
  return call(std::move(function), [] {});
}

template <typename Function, typename Meanwhile>
auto Session::call(Function function, Meanwhile meanwhile) -> decltype(function()) {
  struct Outcome {
    decltype(function()) result{};
    std::exception_ptr failure;
  };
  const auto outcome = std::make_shared<Outcome>();
  runner_.run([outcome, function = std::move(function)]() mutable {
    try {
      outcome->result = function();
    } catch (...) {
      outcome->failure = std::current_exception();
    }
  });
  callRuns_ = true;
  while (!callEnded()) meanwhile();
  if (outcome->failure) std::rethrow_exception(outcome->failure);
  return std::move(outcome->result);
}

template <typename Function>
void Session::send(Function function) {
  const tembra_failure before = lastFailure(TEMBRA_FAILURE_SEND);
  function();
  checkSent(before);
}

}  // namespace tembra::frontend

#endif
