#include "watch_server.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <ctime>
#include <new>
#include <stdexcept>
#include <utility>

#include "history.h"
#include "watch_peer.h"

namespace tembra::frontend {
namespace {

constexpr std::size_t kStackSize = 262144;  // of which a few pages are ever touched
constexpr int kPause = 200;                 // milliseconds without new watchers when descriptors are short

Holder thisProcess(Holder holder) {
  holder.pid = getpid();
  holder.since = std::time(nullptr);
  return holder;
}

/// A thread with a small stack that no signal of the program disturbs. @return an errno
int startThread(pthread_t& thread, void* (*work)(void*), void* argument) {
  sigset_t all;
  sigset_t before;
  sigfillset(&all);
  pthread_attr_t attributes;
  pthread_attr_init(&attributes);
  pthread_attr_setstacksize(&attributes, kStackSize);
  pthread_sigmask(SIG_SETMASK, &all, &before);
  const int failure = pthread_create(&thread, &attributes, work, argument);
  pthread_sigmask(SIG_SETMASK, &before, nullptr);
  pthread_attr_destroy(&attributes);
  return failure;
}

}  // namespace

WatchServer::WatchServer(const std::string& path, Holder holder, Host& host)
    : host_(host), holder_(thisProcess(std::move(holder))) {
  try {
    listener_.emplace(path);
    start();
  } catch (const std::exception& failure) {
    error_ = std::string("nobody can watch: ") + failure.what();
    listener_.reset();
  }
}

void WatchServer::start() {
  alarm_ = Descriptor(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK));
  if (!alarm_.valid()) throw std::runtime_error(std::strerror(errno));
  pthread_t thread{};
  const auto work = [](void* server) -> void* {
    static_cast<WatchServer*>(server)->serve();
    return nullptr;
  };
  const int failure = startThread(thread, work, this);
  if (failure != 0) throw std::runtime_error(std::strerror(failure));
  thread_ = thread;
}

WatchServer::~WatchServer() {
  if (!thread_) return;
  {
    const std::lock_guard lock(mutex_);
    ends_ = true;
  }
  eventfd_write(alarm_.get(), 1);
  pthread_join(*thread_, nullptr);
}

void WatchServer::leave() {
  if (listener_) listener_->removeFile();
}

void WatchServer::publish(unsigned number, std::string_view line) noexcept {
  if (count_ == 0) return;  // whoever comes later hears of it from the state
  {
    const std::lock_guard lock(mutex_);
    try {
      isLost_ = isLost_ || unsentBytes_ + line.size() >= kMostBehind;
      if (!isLost_) unsent_.push_back({number, std::string(line) + '\n'});
      unsentBytes_ += line.size();
    } catch (const std::bad_alloc&) {
      isLost_ = true;
    }
  }
  eventfd_write(alarm_.get(), 1);
}

void WatchServer::serve() {
  try {
    while (serveOnce()) {
    }
  } catch (const std::exception&) {
    // No memory: nobody is served any more.
  }
  history().clearAlarm(alarm_.get());
  listener_->stop();  // first, so that a watcher that hears the end finds nobody when it connects anew
  for (Watcher& each : watchers_) drop(each);
  count_ = 0;
}

bool WatchServer::serveOnce() {
  std::vector<pollfd> waits = {{alarm_.get(), POLLIN, 0}, {isShort_ ? -1 : listener_->descriptor(), POLLIN, 0}};
  for (const Watcher& each : watchers_) {
    waits.push_back({each.socket.get(), static_cast<short>(each.isSilent ? 0 : POLLIN), 0});
  }
  if (poll(waits.data(), waits.size(), isShort_ ? kPause : -1) < 0 && errno != EINTR) return false;
  isShort_ = false;
  eventfd_t count = 0;
  if (waits[0].revents != 0) eventfd_read(alarm_.get(), &count);
  std::vector<Event> events;
  const bool goesOn = takeUnsent(events);
  for (Watcher& each : watchers_) tell(each, events);
  if (!goesOn) return false;
  for (std::size_t i = 0; i < watchers_.size(); ++i) {
    if (waits[i + 2].revents != 0) listenTo(watchers_[i], (waits[i + 2].revents & POLLHUP) != 0);
  }
  watchers_.erase(
      std::remove_if(watchers_.begin(), watchers_.end(), [](const Watcher& each) { return !each.socket.valid(); }),
      watchers_.end());
  if (waits[1].revents != 0) accept();
  count_ = watchers_.size();
  return true;
}

bool WatchServer::takeUnsent(std::vector<Event>& events) {
  const std::lock_guard lock(mutex_);
  if (isLost_) {  // they would miss an event and not know it
    for (Watcher& each : watchers_) drop(each);
  }
  isLost_ = false;
  unsentBytes_ = 0;
  events.swap(unsent_);
  return !ends_;
}

// An event that was published before the state was asked for may still be unsent. The new watcher has heard of it.
void WatchServer::tell(Watcher& watcher, const std::vector<Event>& events) {
  if (watcher.asksForHistory) return say(watcher, history().behind(watcher.lastEntry));
  std::string lines;
  for (const Event& each : events) {
    if (each.number > watcher.lastEvent) lines += each.line;
  }
  say(watcher, lines);
}

// The count grows before the state is asked for, so that no event in between is left out.
void WatchServer::accept() {
  Watcher watcher{Descriptor(accept4(listener_->descriptor(), nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK))};
  if (!watcher.socket.valid()) {
    isShort_ = errno == EMFILE || errno == ENFILE || errno == ENOMEM || errno == ENOBUFS;
    return;
  }
  if (!mayWatch(watcher.socket.get(), listener_->group())) return refuse(watcher, "not permitted");
  ++count_;
  const int room = kMostBehind;
  setsockopt(watcher.socket.get(), SOL_SOCKET, SO_SNDBUF, &room, sizeof room);
  const State state = host_.state();
  watcher.lastEvent = state.lastEvent;
  say(watcher, holderLine(holder_, state.json) + '\n');
  if (watchers_.size() == kMostWatchers) return refuse(watcher, "too many watchers");
  if (watcher.socket.valid()) watchers_.push_back(std::move(watcher));
}

void WatchServer::refuse(Watcher& watcher, std::string_view why) {
  say(watcher, errorLine(why) + '\n');
  drop(watcher);
}

void WatchServer::listenTo(Watcher& watcher, bool isGone) {
  std::array<char, kLongestLine> bytes{};
  const ssize_t length = recv(watcher.socket.get(), bytes.data(), bytes.size(), 0);
  if (length == 0 && !isGone) {
    watcher.isSilent = true;
  } else if (length == 0 || (length < 0 && errno != EAGAIN)) {
    drop(watcher);
  } else if (length > 0) {
    const std::string_view said(bytes.data(), static_cast<std::size_t>(length));
    if (!watcher.lines.add(said, [&](std::string_view line) { obey(watcher, line); })) drop(watcher);
  }
}

void WatchServer::obey(Watcher& watcher, std::string_view line) {
  if (line == "cancel") {
    host_.cancelAsked();
  } else if (line == "history") {
    tellHistory(watcher);
  } else {
    say(watcher, errorLine("unknown line") + '\n');
  }
}

// The alarm first, so that no entry in between is told late.
void WatchServer::tellHistory(Watcher& watcher) {
  history().setAlarm(alarm_.get());
  watcher.asksForHistory = true;
  watcher.lastEntry = 0;
  say(watcher, history().behind(watcher.lastEntry));
  say(watcher, historyLine(watcher.lastEntry) + '\n');
}

// A watcher that does not take all of it has stopped reading.
void WatchServer::say(Watcher& watcher, std::string_view lines) {
  if (lines.empty() || !watcher.socket.valid()) return;
  const ssize_t sent = send(watcher.socket.get(), lines.data(), lines.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
  if (sent != static_cast<ssize_t>(lines.size())) drop(watcher);
}

// A child that the program started may have the descriptor, too: closing it here would not be the end.
void WatchServer::drop(Watcher& watcher) {
  if (!watcher.socket.valid()) return;
  shutdown(watcher.socket.get(), SHUT_RDWR);
  watcher.socket.reset();
}

}  // namespace tembra::frontend
