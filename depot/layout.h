// The layout of a Depot file, as far as looking at one takes.
#ifndef TEMBRA_DEPOT_LAYOUT_H
#define TEMBRA_DEPOT_LAYOUT_H

#include <algorithm>
#include <climits>
#include <cstddef>

namespace tembra::depot {

/// Stands at offset 0. The buckets follow: for each the offset of its first record, 0 for none. Then the records.
struct Header {
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
    return static_cast<long long>(sizeof(Header)) + static_cast<long long>(sizeof(int)) * bucket;
  }
  [[nodiscard]] long long firstRecord() const { return bucketOffset(buckets); }
};
static_assert(sizeof(Header) == 48 && offsetof(Header, flags) == 16 && offsetof(Header, fileSize) == 24);
static_assert(offsetof(Header, buckets) == 32 && offsetof(Header, records) == 40);

/// Its key, value and padding follow. The records of a bucket form a search tree by their second hash.
struct Record {
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
  [[nodiscard]] long long keyEnd() const { return static_cast<long long>(sizeof(Record)) + keySize; }
  [[nodiscard]] long long end() const { return keyEnd() + valueSize + padding; }
  /// The Depot library takes such a value for one that fits into a small buffer, and reads what stands behind it.
  [[nodiscard]] bool overflows() const { return keyEnd() + valueSize > INT_MAX; }
  /// Where the Depot library goes on behind a record that begins there. It computes offsets as int: a sum beyond that
  /// range wraps around.
  [[nodiscard]] int nextFrom(long long offset) const { return static_cast<int>(static_cast<unsigned>(offset + end())); }
};
static_assert(sizeof(Record) == 28 && offsetof(Record, keySize) == 8 && offsetof(Record, left) == 20);

}  // namespace tembra::depot

#endif
