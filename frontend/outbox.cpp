#include "outbox.h"

#include <sys/eventfd.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

#include "history.h"
#include "texts.h"

namespace tembra::frontend {
namespace {

long long between(Clock::time_point from, Clock::time_point to) {
  return std::chrono::duration_cast<Milliseconds>(to - from).count();
}

}  // namespace

Outbox::Outbox() : descriptor_(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {
  if (descriptor_ < 0) throw NoDescriptor{errno};
}

Outbox::~Outbox() { close(descriptor_); }

long long Outbox::endsIn(Clock::time_point now) const { return hasLimit_ ? std::max(0LL, between(now, limit_)) : -1; }

long long Outbox::sinceBeginning(Clock::time_point now) const {
  return state_.operation == TEMBRA_OPERATION_NONE ? 0 : between(began_, now);
}

void Outbox::begin(int operation) {
  const std::lock_guard lock(mutex_);
  state_ = sized<tembra_state>();
  state_.operation = operation;
  state_.phase = TEMBRA_PHASE_OPENING;
  began_ = entered_ = Clock::now();
  hasLimit_ = false;
}

void Outbox::enter(tembra_phase phase, Milliseconds limit, const KnownDevice& device) {
  const std::lock_guard lock(mutex_);
  change(phase, limit, device);
}

void Outbox::change(tembra_phase phase, Milliseconds limit, const KnownDevice& device) {
  state_.phase = phase;
  state_.device_id = device.id;
  putText(state_.device_name, device.name);
  state_.found = {};
  entered_ = Clock::now();
  hasLimit_ = limit.count() >= 0;
  limit_ = entered_ + limit;
}

void Outbox::setRadio(int radio) {
  const std::lock_guard lock(mutex_);
  state_.radio = radio;
}

void Outbox::offer(const tembra_found& found, int id, Milliseconds limit) {
  const std::lock_guard lock(mutex_);
  change(TEMBRA_PHASE_CHOICE, limit, {id, found.name});
  state_.found = found;
}

bool Outbox::takeOffer(std::string_view name) {
  const std::lock_guard lock(mutex_);
  if (state_.phase != TEMBRA_PHASE_CHOICE) return false;
  change(TEMBRA_PHASE_STORING, kForStoring, {state_.device_id, std::string(name.empty() ? state_.device_name : name)});
  return true;
}

std::string Outbox::emit(tembra_event_kind kind, const Detail& detail) {
  const std::lock_guard lock(mutex_);
  return add(kind, detail);
}

std::string Outbox::add(tembra_event_kind kind, const Detail& detail) {
  const Clock::time_point now = Clock::now();
  auto event = std::make_unique<tembra_event>();
  event->head = {sizeof event->head, kind,         state_.operation,    ++lastNumber_,
                 state_.phase,       state_.radio, sinceBeginning(now), endsIn(now)};
  event->detail = detail;
  event->json = eventJson(event->head, event->detail);
  std::string json = shortEventJson(*event);
  history().event(json);
  events_.push_back(std::move(event));
  eventfd_write(descriptor_, 1);
  changed_.notify_all();
  return json;
}

std::string Outbox::end(const tembra_ended& ended, bool isCallLate) {
  const std::lock_guard lock(mutex_);
  std::string json = add(TEMBRA_EVENT_ENDED, ended);
  if (!isCallLate) forget();
  return json;
}

void Outbox::clear() {
  const std::lock_guard lock(mutex_);
  forget();
}

void Outbox::forget() {
  state_ = sized<tembra_state>();
  hasLimit_ = false;
}

long long Outbox::waited() const {
  const std::lock_guard lock(mutex_);
  return between(entered_, Clock::now());
}

std::unique_ptr<tembra_event> Outbox::next(int milliseconds) {
  std::unique_lock lock(mutex_);
  const auto some = [this] { return !events_.empty(); };
  if (milliseconds < 0) {
    changed_.wait(lock, some);
  } else if (!changed_.wait_for(lock, Milliseconds(milliseconds), some)) {
    return nullptr;
  }
  auto event = std::move(events_.front());
  events_.pop_front();
  eventfd_t count = 0;
  if (events_.empty()) eventfd_read(descriptor_, &count);
  return event;
}

tembra_state Outbox::state() const {
  const std::lock_guard lock(mutex_);
  const Clock::time_point now = Clock::now();
  tembra_state state = state_;
  state.last_event = lastNumber_;
  state.milliseconds = sinceBeginning(now);
  state.ends_in = endsIn(now);
  return state;
}

}  // namespace tembra::frontend
