// The flight recorder: what the process's kit did last, as JSON lines in a ring of fixed size.
#ifndef TEMBRA_FRONTEND_HISTORY_H
#define TEMBRA_FRONTEND_HISTORY_H

#include <pthread.h>
#include <tembra/history.h>

#include <array>
#include <cstddef>
#include <initializer_list>
#include <string>
#include <string_view>

namespace tembra::frontend {

/// Any thread may call all of it at any time. Recording allocates nothing and waits for nobody but another entry.
///
/// The bytes are the lines themselves, so that they can be read out of a core file, too.
class History {
 public:
  constexpr History() = default;
  History(const History&) = delete;
  History& operator=(const History&) = delete;

  // ---- What is recorded ----
  void event(std::string_view json) noexcept;
  /// @param arguments empty ones are left out @param error errno of a call that was refused, else 0
  void call(const char* name, std::initializer_list<std::string_view> arguments, int error) noexcept;
  void line(int level, std::string_view text) noexcept;  ///< of the library's log

  // ---- What is told ----
  /// Writes the newest whole lines that have room, and a NUL. @return their length
  std::size_t write(char* text, std::size_t size) const noexcept;
  /// The lines behind an entry, which becomes the last one. Without memory: none.
  [[nodiscard]] std::string behind(unsigned long long& entry) const noexcept;
  /// An eventfd that counts every entry from now on, in place of another: a process has one kit, and a kit one server.
  void setAlarm(int descriptor) noexcept;
  /// Where the alarm is this one there is none any more.
  void clearAlarm(int descriptor) noexcept;

 private:
  class Lock;
  static constexpr std::size_t kCapacity = TEMBRA_HISTORY_SIZE - 128;

  void begin() noexcept;
  void end() noexcept;
  void put(std::string_view bytes) noexcept;
  void putNumber(std::string_view before, long long number) noexcept;
  void putString(std::string_view text) noexcept;
  void putEscaped(unsigned unit) noexcept;
  void dropFirst() noexcept;
  [[nodiscard]] std::size_t lineEnd(std::size_t from) const noexcept;
  [[nodiscard]] std::size_t lineBegin(std::size_t to) const noexcept;
  [[nodiscard]] std::size_t beginBehind(unsigned long long entry) const noexcept;
  bool copyBehind(unsigned long long& entry, std::string& room, std::size_t& length) const noexcept;
  void copy(std::size_t from, char* to) const noexcept;

  // Nothing is ever destroyed: a detached thread of the library may log until the very end of the process. All of it
  // begins as zeros, so that no file has to hold it.
  mutable pthread_mutex_t mutex_ = PTHREAD_MUTEX_INITIALIZER;
  unsigned long long dropped_ = 0;  ///< entries that are gone; the next one is the first line
  unsigned long long last_ = 0;     ///< entry
  std::size_t begin_ = 0;
  std::size_t length_ = 0;
  bool hasAlarm_ = false;
  int alarm_ = 0;
  std::array<char, kCapacity> bytes_{};
};
static_assert(sizeof(History) <= TEMBRA_HISTORY_SIZE);

/// The process's one.
[[nodiscard]] History& history();

}  // namespace tembra::frontend

#endif
