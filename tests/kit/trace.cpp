#include "kit/trace.h"

#include <cstring>
#include <utility>

namespace kit {

DeviceReport RecordedEvent::report() const {
  DeviceReport report{};
  std::memcpy(&report, event.payload, sizeof report);
  return report;
}

TimeoutReport RecordedEvent::timeout() const {
  TimeoutReport report{};
  std::memcpy(&report, event.payload, sizeof report);
  return report;
}

void Trace::watch(unsigned kinds) {
  const std::lock_guard<std::mutex> lock(mutex_);
  watched_ = kinds;
}

void Trace::add(std::string_view line) {
  const std::lock_guard<std::mutex> lock(mutex_);
  appendVisible(lines_, line);
  lines_ += '\n';
}

void Trace::addWatched(Watch kind, std::string_view line) {
  {
    const std::lock_guard<std::mutex> lock(mutex_);
    if ((watched_ & kind) == 0) return;
  }
  add(line);
}

void Trace::addSend(Datagram datagram, std::string_view line) {
  {
    const std::lock_guard<std::mutex> lock(mutex_);
    sends_.push_back(std::move(datagram));
  }
  add(line);
}

void Trace::addEvent(RecordedEvent event) {
  const std::string line =
      "event " + std::to_string(event.event.code) + " source " + std::to_string(event.event.source);
  {
    const std::lock_guard<std::mutex> lock(mutex_);
    events_.push_back(std::move(event));
  }
  add(line);
}

std::string Trace::takeLines() {
  const std::lock_guard<std::mutex> lock(mutex_);
  std::string taken = lines_;
  lines_.clear();  // its room is soon needed again
  return taken;
}

std::vector<Datagram> Trace::takeSends() {
  const std::lock_guard<std::mutex> lock(mutex_);
  return std::exchange(sends_, {});
}

std::vector<RecordedEvent> Trace::takeEvents() {
  const std::lock_guard<std::mutex> lock(mutex_);
  return std::exchange(events_, {});
}

void Trace::forget() {
  {
    const std::lock_guard<std::mutex> lock(mutex_);
    lines_.clear();
  }
  takeSends();
  takeEvents();
}

// Never destroyed: the library's thread may still be there at exit.
Trace& trace() {
  static Trace& one = *new Trace;
  return one;
}

std::string lines(std::initializer_list<std::string_view> each) {
  std::string joined;
  for (const std::string_view line : each) {
    joined += line;
    joined += '\n';
  }
  return joined;
}

std::string errorName(int error) {
  const char* name = strerrorname_np(error);
  return name == nullptr ? std::to_string(error) : name;
}

}  // namespace kit
