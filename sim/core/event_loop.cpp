#include "sim/core/event_loop.h"

#include <poll.h>

#include <algorithm>
#include <cerrno>
#include <system_error>
#include <vector>

namespace tembra::sim {

using std::chrono::milliseconds;
using RealMilliseconds = std::chrono::duration<double, std::milli>;

EventLoop::EventLoop(double speed) : speed_(speed), start_(Clock::now()) {}

EventLoop::TimerId EventLoop::after(milliseconds delay, Task task) {
  const RealMilliseconds real(static_cast<double>(delay.count()) / speed_);
  const TimerId id = ++lastTimer_;
  timers_.emplace(Deadline(Clock::now() + std::chrono::duration_cast<Clock::duration>(real), id), std::move(task));
  return id;
}

void EventLoop::cancel(TimerId id) {
  std::erase_if(timers_, [id](const auto& timer) { return timer.first.second == id; });
}

void EventLoop::watch(int descriptor, Task onReadable) { watches_[descriptor] = std::move(onReadable); }

void EventLoop::forget(int descriptor) { watches_.erase(descriptor); }

milliseconds EventLoop::now() const {
  return std::chrono::duration_cast<milliseconds>((Clock::now() - start_) * speed_);
}

void EventLoop::run() {
  running_ = true;
  while (running_) {
    runDueTimers();
    if (running_) serveReadable();
  }
}

void EventLoop::stop() { running_ = false; }

void EventLoop::runDueTimers() {
  const Clock::time_point now = Clock::now();
  while (running_ && !timers_.empty() && timers_.begin()->first.first <= now) {
    const Task task = std::move(timers_.extract(timers_.begin()).mapped());
    task();
  }
}

int EventLoop::pollTimeout() const {
  if (timers_.empty()) return -1;
  const auto wait = std::chrono::ceil<milliseconds>(timers_.begin()->first.first - Clock::now());
  constexpr milliseconds longest = std::chrono::hours(1);
  return static_cast<int>(std::clamp(wait, milliseconds(0), longest).count());
}

void EventLoop::serveReadable() {
  std::vector<pollfd> polled;
  polled.reserve(watches_.size());
  for (const auto& [descriptor, task] : watches_) polled.push_back({.fd = descriptor, .events = POLLIN, .revents = 0});
  if (poll(polled.data(), polled.size(), pollTimeout()) < 0 && errno != EINTR) {
    throw std::system_error(errno, std::generic_category(), "poll");
  }
  for (const pollfd& entry : polled) {
    const auto watch = watches_.find(entry.fd);  // an earlier task may have forgotten it
    if (entry.revents == 0 || watch == watches_.end()) continue;
    const Task task = watch->second;  // the task may forget itself
    task();
  }
}

}  // namespace tembra::sim
