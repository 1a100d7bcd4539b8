// Reads an open Depot file, without the Depot library.
#ifndef TEMBRA_DEPOT_FILE_H
#define TEMBRA_DEPOT_FILE_H

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <cstring>

#include "depot/layout.h"

namespace tembra::depot {

/// An open file, read through a window that moves along. It uses the descriptor that it is given,
/// because closing another descriptor of the same file would drop the Depot library's lock.
class File {
 public:
  static constexpr std::size_t kMostAhead = 16384;
  static constexpr std::size_t kLittleAhead = sizeof(Header);

  /// `ahead` bytes are read at a time: the most to go through the file, a little to leap about in it.
  explicit File(int descriptor, std::size_t ahead = kMostAhead) : descriptor_(descriptor), ahead_(ahead) {
    struct stat status = {};
    if (fstat(descriptor, &status) == 0) size_ = status.st_size;
  }

  /// -1 when the system does not tell it; every read fails then.
  [[nodiscard]] long long size() const { return size_; }

  /// False when the file ends before.
  template <typename Item>
  bool read(long long offset, Item& item) {
    return read(offset, &item, sizeof item);
  }

  /// At most `kMostAhead` bytes.
  bool read(long long offset, void* out, std::size_t size) {
    const auto length = static_cast<long long>(size);
    if (offset < 0 || offset + length > size_) return false;
    const bool isInWindow = offset >= start_ && offset + length <= start_ + length_;
    if (!isInWindow && !moveTo(offset, length)) return false;
    std::memcpy(out, window_ + (offset - start_), size);
    return true;
  }

 private:
  bool moveTo(long long offset, long long length) {
    start_ = offset;
    length_ =
        pread(descriptor_, window_, std::max(ahead_, static_cast<std::size_t>(length)), static_cast<off_t>(offset));
    return length_ >= length;
  }

  int descriptor_;
  std::size_t ahead_;
  long long size_ = -1;
  long long start_ = 0;
  long long length_ = 0;
  unsigned char window_[kMostAhead];
};

}  // namespace tembra::depot

#endif
