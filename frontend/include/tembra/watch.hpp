// <tembra/watch.h> for C++17: who has the connection, what happens there, and cancelling it. No kit is needed.
//
//     if (tembra::Watch watch; watch) {
//       while (const auto line = watch.next()) std::puts(line->c_str());
//     }
#ifndef TEMBRA_WATCH_HPP
#define TEMBRA_WATCH_HPP

#include <tembra/watch.h>
#include <tembra/frontend_event.hpp>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <climits>
#include <memory>
#include <optional>
#include <string>

namespace tembra {
inline namespace frontend_1 {

/// Who has the connection. Nothing: errno says why, ENOENT when nobody serves there. @param atMost how long that
/// process may take to answer
inline std::optional<Holder> holder(const std::string& path = TEMBRA_WATCH_PATH,
                                    std::chrono::milliseconds atMost = std::chrono::milliseconds(200)) {
  tembra_holder answer{};
  answer.size = sizeof answer;
  const auto wait = std::clamp<std::chrono::milliseconds::rep>(atMost.count(), -1, INT_MAX);
  errno = tembra_read_holder(path.c_str(), static_cast<int>(wait), &answer);
  if (errno != 0) return std::nullopt;
  return Holder{answer.pid,
                static_cast<Role>(answer.role),
                static_cast<std::time_t>(answer.since),
                answer.program,
                answer.operation,
                answer.phase};
}

/// One thread at a time uses it.
class Watch {
 public:
  /// Does not wait. When it fails, the object is false and errno says why, see tembra_watch_open.
  explicit Watch(const std::string& path = TEMBRA_WATCH_PATH) : watch_(tembra_watch_open(path.c_str())) {}
  explicit operator bool() const { return watch_ != nullptr; }

  /// Readable when the other process has said something, or is gone. -1: nothing is watched.
  [[nodiscard]] int descriptor() const { return watch_ ? tembra_watch_descriptor(watch_.get()) : -1; }

  /// The next line, a JSON object. Nothing: errno says why, ETIMEDOUT when none came in time, ECONNRESET when the other
  /// process is gone. @param atMost 0 only looks; negative: without limit
  std::optional<std::string> next(std::chrono::milliseconds atMost = std::chrono::milliseconds(-1)) {
    if (!watch_) return errno = EBADF, std::nullopt;
    const auto wait = std::clamp<std::chrono::milliseconds::rep>(atMost.count(), -1, INT_MAX);
    const char* line = tembra_watch_next(watch_.get(), static_cast<int>(wait));
    return line == nullptr ? std::nullopt : std::optional<std::string>(line);
  }

  /// Asks the other process to cancel what runs. @return 0 or an errno, as of tembra_watch_cancel
  int cancel() { return watch_ ? tembra_watch_cancel(watch_.get()) : EBADF; }

  /// Asks for the flight recorder: from now on the lines are its entries. @return as of tembra_watch_history
  int history() { return watch_ ? tembra_watch_history(watch_.get()) : EBADF; }

 private:
  struct Close {
    void operator()(tembra_watch* watch) const { tembra_watch_close(watch); }
  };
  std::unique_ptr<tembra_watch, Close> watch_;
};

}  // namespace frontend_1
}  // namespace tembra

#endif
