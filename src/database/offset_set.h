// A set of offsets of one file.
#ifndef TEMBRA_DATABASE_OFFSET_SET_H
#define TEMBRA_DATABASE_OFFSET_SET_H

#include <climits>
#include <cstddef>

#include "database/pages.h"

namespace tembra {

class OffsetSet {
 public:
  explicit OffsetSet(long long fileSize)
      : pages_(static_cast<std::size_t>(fileSize / CHAR_BIT) + 1), bits_(pages_.as<unsigned char>()) {}

  [[nodiscard]] bool isThere() const { return pages_.isThere(); }

  [[nodiscard]] bool has(long long offset) const { return (bits_[offset / CHAR_BIT] & bitOf(offset)) != 0; }
  void add(long long offset) { bits_[offset / CHAR_BIT] |= bitOf(offset); }
  void drop(long long offset) { bits_[offset / CHAR_BIT] &= static_cast<unsigned char>(~bitOf(offset)); }

 private:
  static unsigned char bitOf(long long offset) { return static_cast<unsigned char>(1U << (offset % CHAR_BIT)); }

  Pages pages_;
  unsigned char* bits_;
};

}  // namespace tembra

#endif
