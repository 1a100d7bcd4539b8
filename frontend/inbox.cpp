#include "inbox.h"

#include <tembra/globals.h>

#include <cstring>

#include "history.h"
#include "names.h"

namespace tembra::frontend {
namespace {

// With the inbox locked, so that the call stands before what comes of it. An authorisation code is a secret.
void record(const Command& command) {
  const bool hasNumber =
      command.operation == TEMBRA_OPERATION_RESET || command.operation == TEMBRA_OPERATION_HUE_ADD_BRIDGE;
  const std::string what = hasNumber ? std::to_string(command.what) : "";
  const bool isSecret = command.operation == TEMBRA_OPERATION_NEST_LINK;
  const std::string_view target = isSecret ? std::string_view() : command.target;
  history().call(callName(command), {target, command.text, what}, 0);
}

void record(const Choice& choice) {
  history().call("finish", {std::to_string(choice.type), choice.name, choice.place}, 0);
}

}  // namespace

const char* callName(const Command& command) {
  if (command.operation == TEMBRA_OPERATION_ADD && command.what != 0) return "add-again";
  if (command.operation == TEMBRA_OPERATION_REMOVE && command.what != 0) return "take-out";
  return operationName(command.operation);
}

// The callback does not hold the library's lock: a command of the kit may change the state meanwhile.
std::unique_ptr<LibraryEvent> snapshot(const AssocEvent& event) {
  const TembraAssociation& service = *TembraAssociation::singleton;
  auto heard = std::make_unique<LibraryEvent>();
  heard->event = event;
  heard->state = __atomic_load_n(&service.assocState, __ATOMIC_RELAXED);
  heard->classifiedType = service.classifiedType;
  heard->deviceId = DevId;
  heard->removedId = service.removedId;
  heard->node = service.zwNodeRx.nodeId;
  std::memcpy(heard->deviceName, service.devName, sizeof heard->deviceName);
  std::memcpy(heard->removedName, service.removedName, sizeof heard->removedName);
  heard->zigbeeDevice = service.zbDevice;
  return heard;
}

bool Inbox::start(Command command) {
  const std::lock_guard lock(mutex_);
  if (busy_ || quits_) return false;
  busy_ = true;
  cancelled_ = false;
  events_.clear();
  choice_.reset();
  hasLostEvents_ = false;
  record(command);
  command_ = std::move(command);
  changed_.notify_all();
  return true;
}

bool Inbox::cancel() {
  const std::lock_guard lock(mutex_);
  if (!busy_ || cancelled_) return false;
  history().call("cancel", {}, 0);
  cancelled_ = true;
  changed_.notify_all();
  return true;
}

void Inbox::choose(Choice choice) {
  const std::lock_guard lock(mutex_);
  record(choice);
  choice_ = std::move(choice);
  changed_.notify_all();
}

void Inbox::quit() {
  const std::lock_guard lock(mutex_);
  cancelled_ = quits_ = true;
  changed_.notify_all();
}

void Inbox::hear(std::unique_ptr<LibraryEvent> event) {
  const std::lock_guard lock(mutex_);
  if (!busy_) return;
  events_.push_back(std::move(event));
  changed_.notify_all();
}

void Inbox::loseEvents() {
  const std::lock_guard lock(mutex_);
  hasLostEvents_ = true;
}

void Inbox::callEnded() {
  const std::lock_guard lock(mutex_);
  callEnded_ = true;
  changed_.notify_all();
}

std::optional<Command> Inbox::awaitCommand() {
  std::unique_lock lock(mutex_);
  changed_.wait(lock, [this] { return command_ || quits_; });
  if (quits_) return std::nullopt;
  std::optional<Command> command = std::move(command_);
  command_.reset();
  return command;
}

void Inbox::acceptNext() {
  const std::lock_guard lock(mutex_);
  busy_ = false;
}

Inbox::Call Inbox::awaitCall(Clock::time_point until) {
  std::unique_lock lock(mutex_);
  changed_.wait_until(lock, until, [this] { return callEnded_ || cancelled_; });
  if (!callEnded_) return cancelled_ ? Call::kCancelled : Call::kRuns;
  callEnded_ = false;
  return Call::kEnded;
}

bool Inbox::awaitLateCall(Milliseconds longest) {
  std::unique_lock lock(mutex_);
  const auto ended = [this] { return callEnded_; };
  if (longest.count() < 0) {
    changed_.wait(lock, ended);
  } else if (!changed_.wait_for(lock, longest, ended)) {
    return false;
  }
  callEnded_ = false;
  return true;
}

void Inbox::await(Clock::time_point until) {
  std::unique_lock lock(mutex_);
  changed_.wait_until(lock, until, [this] { return cancelled_ || choice_ || !events_.empty(); });
}

bool Inbox::isCancelled() const {
  const std::lock_guard lock(mutex_);
  return cancelled_;
}

bool Inbox::hasEvents() const {
  const std::lock_guard lock(mutex_);
  return !events_.empty();
}

bool Inbox::hasLostEvents() const {
  const std::lock_guard lock(mutex_);
  return hasLostEvents_;
}

bool Inbox::hasChoice() const {
  const std::lock_guard lock(mutex_);
  return choice_.has_value();
}

std::unique_ptr<LibraryEvent> Inbox::takeEvent() {
  const std::lock_guard lock(mutex_);
  if (events_.empty()) return nullptr;
  auto event = std::move(events_.front());
  events_.pop_front();
  return event;
}

std::optional<Choice> Inbox::takeChoice() {
  const std::lock_guard lock(mutex_);
  std::optional<Choice> choice = std::move(choice_);
  choice_.reset();
  return choice;
}

}  // namespace tembra::frontend
