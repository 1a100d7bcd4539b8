// Lets other processes of the router see who has the association connection, watch what that process does, and ask it
// to cancel. It exists from the moment the connection is open until the connection is closed.
#ifndef TEMBRA_FRONTEND_WATCH_SERVER_H
#define TEMBRA_FRONTEND_WATCH_SERVER_H

#include <pthread.h>

#include <atomic>
#include <cstddef>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "holder_line.h"
#include "watch_listener.h"
#include "watcher_lines.h"

namespace tembra::frontend {

inline constexpr std::size_t kMostWatchers = 16;
inline constexpr std::size_t kMostBehind = 65536;  ///< bytes that a watcher may leave unread

/// Whatever goes wrong here is no reason to fail an operation: then it serves nobody.
class WatchServer {
 public:
  struct State {
    std::string json;        ///< one object on one line
    unsigned lastEvent = 0;  ///< number of the last event that is part of it
  };

  /// What the server asks of its owner, on a thread of its own. It must not be destroyed by either.
  struct Host {
    Host() = default;
    Host(const Host&) = delete;
    Host& operator=(const Host&) = delete;
    virtual ~Host() = default;

    /// What publish() was told before is part of it.
    virtual State state() = 0;
    virtual void cancelAsked() = 0;
  };

  /// @param path of the socket's file, absolute
  /// @param holder its pid and since are filled in
  WatchServer(const std::string& path, Holder holder, Host& host);

  /// Sends what was published, and waits for its thread. No lock that the host's functions take may be held.
  ~WatchServer();
  WatchServer(const WatchServer&) = delete;
  WatchServer& operator=(const WatchServer&) = delete;

  /// Frees the path for another process. Those who watch go on.
  void leave();

  /// Sends an event to each watcher that has not heard of it by the state. Never waits for a watcher.
  /// @param number of the event, greater than those before
  /// @param line one JSON object without a newline
  void publish(unsigned number, std::string_view line) noexcept;

  /// Why nobody is served; empty when all is well.
  [[nodiscard]] const std::string& error() const { return error_; }

 private:
  struct Event {
    unsigned number;
    std::string line;
  };
  struct Watcher {
    Descriptor socket;
    unsigned lastEvent = 0;  ///< that it has heard of
    WatcherLines lines{};
    bool isSilent = false;  ///< it closed its half of the connection, and may go on reading
    bool asksForHistory = false;
    unsigned long long lastEntry = 0;  ///< of the flight recorder, that it has heard of
  };

  void start();
  void serve();
  [[nodiscard]] bool serveOnce();
  [[nodiscard]] bool takeUnsent(std::vector<Event>& events);
  void tell(Watcher& watcher, const std::vector<Event>& events);
  void accept();
  void listenTo(Watcher& watcher, bool isGone);
  void obey(Watcher& watcher, std::string_view line);
  void say(Watcher& watcher, std::string_view lines);
  void tellHistory(Watcher& watcher);
  void refuse(Watcher& watcher, std::string_view why);
  void drop(Watcher& watcher);

  Host& host_;
  const Holder holder_;
  std::string error_;
  std::optional<WatchListener> listener_;
  Descriptor alarm_;
  std::optional<pthread_t> thread_;

  // Of the server's thread.
  std::vector<Watcher> watchers_;
  bool isShort_ = false;  ///< of descriptors, so nobody is accepted for a moment

  // Of both threads.
  std::atomic<std::size_t> count_ = 0;  ///< of watchers, one that is being accepted included
  std::mutex mutex_;
  std::vector<Event> unsent_;
  std::size_t unsentBytes_ = 0;
  bool isLost_ = false;  ///< events for which there was no room
  bool ends_ = false;
};

}  // namespace tembra::frontend

#endif
