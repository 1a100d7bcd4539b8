// What reaches the kit's worker: commands and choices of the caller, events of the library, the end of a long call.
#ifndef TEMBRA_FRONTEND_INBOX_H
#define TEMBRA_FRONTEND_INBOX_H

#include <tembra/association.h>

#include <condition_variable>
#include <deque>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

#include "outbox.h"

namespace tembra::frontend {

struct Command {
  int operation = 0;
  int what = 0;        ///< what a reset resets, the seconds for a link button; 1: add again, or take out
  std::string target;  ///< a bridge's MAC text, or an authorisation code
  std::string text;    ///< a bulb's name, or the text of a refresh
};

/// How the flight recorder calls it.
[[nodiscard]] const char* callName(const Command& command);

struct Choice {
  int type = 0;
  std::string name;
  std::string place;
};

/// An event of the library, and the fields of its object at that moment.
struct LibraryEvent {
  AssocEvent event;
  int state;           ///< AssocState
  int classifiedType;  ///< DevType
  int deviceId;        ///< of the device being added
  int removedId;
  unsigned char node;  ///< of the Z-Wave node that answered
  char deviceName[180];
  char removedName[180];
  ZbDeviceInfo zigbeeDevice;  ///< as classification leaves it
};

/// The event with the fields of this moment; for the library's callback.
[[nodiscard]] std::unique_ptr<LibraryEvent> snapshot(const AssocEvent& event);

/// Any thread may call all of it at any time.
class Inbox {
 public:
  // ---- From the caller ----
  [[nodiscard]] bool start(Command command);  ///< false: busy
  [[nodiscard]] bool cancel();                ///< false: nothing runs
  void choose(Choice choice);
  void quit();  ///< cancels, and ends the worker

  // ---- From the library's threads ----
  void hear(std::unique_ptr<LibraryEvent> event);
  void loseEvents();  ///< there was no memory for one
  void callEnded();

  // ---- For the worker ----
  [[nodiscard]] std::optional<Command> awaitCommand();  ///< nothing: quit
  void acceptNext();                                    ///< the operation is over: another one may start

  enum class Call { kEnded, kCancelled, kRuns };
  /// Waits until the call has ended or the operation is cancelled, at most until then.
  [[nodiscard]] Call awaitCall(Clock::time_point until);
  /// For an operation that is over already. False: the call has not ended. Negative: without limit.
  [[nodiscard]] bool awaitLateCall(Milliseconds longest);

  /// Waits for an event, a choice or a cancel, at most until then.
  void await(Clock::time_point until);
  [[nodiscard]] bool isCancelled() const;
  [[nodiscard]] bool hasEvents() const;
  [[nodiscard]] bool hasChoice() const;
  [[nodiscard]] bool hasLostEvents() const;
  [[nodiscard]] std::unique_ptr<LibraryEvent> takeEvent();
  [[nodiscard]] std::optional<Choice> takeChoice();

 private:
  mutable std::mutex mutex_;
  std::condition_variable changed_;
  std::deque<std::unique_ptr<LibraryEvent>> events_;
  std::optional<Command> command_;
  std::optional<Choice> choice_;
  bool busy_ = false;
  bool cancelled_ = false;
  bool hasLostEvents_ = false;
  bool callEnded_ = false;
  bool quits_ = false;
};

}  // namespace tembra::frontend

#endif
