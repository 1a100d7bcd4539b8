// What a watcher says, line by line.
#ifndef TEMBRA_FRONTEND_WATCH_WATCHER_LINES_H
#define TEMBRA_FRONTEND_WATCH_WATCHER_LINES_H

#include <cstddef>
#include <string>
#include <string_view>

namespace tembra::frontend {

/// Longest line of a watcher, its newline included.
inline constexpr std::size_t kLongestLine = 256;

/// Puts lines together from what arrives in pieces.
class WatcherLines {
 public:
  /// Calls `onLine` for each line that the bytes complete, without its newline.
  /// @return false: a line is too long, and whoever sends it is not worth listening to
  template <typename OnLine>
  [[nodiscard]] bool add(std::string_view bytes, OnLine onLine) {
    for (std::size_t end = bytes.find('\n'); end != std::string_view::npos; end = bytes.find('\n')) {
      if (begun_.size() + end >= kLongestLine) return false;
      begun_ += bytes.substr(0, end);
      onLine(std::string_view(begun_));
      begun_.clear();
      bytes.remove_prefix(end + 1);
    }
    if (begun_.size() + bytes.size() >= kLongestLine) return false;
    begun_ += bytes;
    return true;
  }

 private:
  std::string begun_;
};

}  // namespace tembra::frontend

#endif
