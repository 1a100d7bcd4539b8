// The layout of a Depot file, as far as checking it takes, and reading it.
#ifndef TEMBRA_DATABASE_DEPOT_FILE_H
#define TEMBRA_DATABASE_DEPOT_FILE_H

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <cstring>

namespace tembra {

/// Stands at offset 0. The buckets follow: for each the offset of its first record, 0 for none. Then the records.
struct DepotHeader {
  char magic[16];
  int flags;
  int unused1;
  int fileSize;
  int unused2;
  int buckets;
  int unused3;
  int records;
  int unused4;

  [[nodiscard]] long long bucketOffset(long long bucket) const {
    return static_cast<long long>(sizeof(DepotHeader)) + static_cast<long long>(sizeof(int)) * bucket;
  }
  [[nodiscard]] long long firstRecord() const { return bucketOffset(buckets); }
};
static_assert(sizeof(DepotHeader) == 48 && offsetof(DepotHeader, flags) == 16 && offsetof(DepotHeader, fileSize) == 24);
static_assert(offsetof(DepotHeader, buckets) == 32 && offsetof(DepotHeader, records) == 40);

/// Its key, value and padding follow. The records of a bucket form a search tree by their second hash.
struct DepotRecord {
  static constexpr int kDeleted = 1;
  static constexpr int kUnlinked = 2;  ///< deleted, and no link leads to it

  int flags;
  int secondHash;
  int keySize;
  int valueSize;
  int padding;
  int left;   ///< offset of a record of the same bucket, 0: none
  int right;  ///< the same

  /// The Depot library refuses to read any other.
  [[nodiscard]] bool isReadable() const { return std::min({keySize, valueSize, padding, left, right}) >= 0; }
  [[nodiscard]] bool isLinked() const { return (flags & kUnlinked) == 0; }
  [[nodiscard]] bool isDeleted() const { return (flags & kDeleted) != 0; }
  [[nodiscard]] long long keyEnd() const { return static_cast<long long>(sizeof(DepotRecord)) + keySize; }
  [[nodiscard]] long long end() const { return keyEnd() + valueSize + padding; }
  /// Where the Depot library goes on behind a record that begins there. It computes offsets as int: a sum beyond that
  /// range wraps around.
  [[nodiscard]] int nextFrom(long long offset) const { return static_cast<int>(static_cast<unsigned>(offset + end())); }
};
static_assert(sizeof(DepotRecord) == 28);

/// An open file, read through a window that moves along.
class DepotFile {
 public:
  static constexpr std::size_t kMostAhead = 16384;

  /// `ahead`: how much to read at a time. One who goes through the file wants the most, one who leaps about in it
  /// little.
  explicit DepotFile(int descriptor, std::size_t ahead = kMostAhead) : descriptor_(descriptor), ahead_(ahead) {
    struct stat status = {};
    if (fstat(descriptor, &status) == 0) size_ = status.st_size;
  }

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
  long long size_ = 0;
  long long start_ = 0;
  long long length_ = 0;
  unsigned char window_[kMostAhead];
};

/// Calls `visit(offset)` for the first record of every bucket that has any; ends early when it returns false. False
/// then only: buckets that cannot be read count as empty.
template <typename Visit>
bool forEachRoot(DepotFile& file, const DepotHeader& header, Visit visit) {
  constexpr int kAtOnce = 256;
  for (int bucket = 0; bucket < header.buckets; bucket += kAtOnce) {
    int roots[kAtOnce];
    const int count = std::min(kAtOnce, header.buckets - bucket);
    if (!file.read(header.bucketOffset(bucket), roots, sizeof(int) * static_cast<std::size_t>(count))) return true;
    for (int i = 0; i < count; ++i) {
      if (roots[i] != 0 && !visit(roots[i])) return false;
    }
  }
  return true;
}

/// Calls `visit(offset, record)` for every record that the Depot library's walk comes to. False when that walk turns
/// back and never ends: behind a record that it hands out it begins again where the next one would be in front of the
/// first; behind a deleted one it fails there.
template <typename Visit>
bool forEachRecord(DepotFile& file, const DepotHeader& header, Visit visit) {
  DepotRecord record{};
  for (long long at = header.firstRecord(), next = 0; file.read(at, record) && record.isReadable(); at = next) {
    visit(at, record);
    if (!record.isDeleted() && at + record.keyEnd() > file.size()) return true;
    next = record.nextFrom(at);
    if (next <= at) return record.isDeleted() && next < 0;
  }
  return true;
}

}  // namespace tembra

#endif
