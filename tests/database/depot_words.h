// The words of a Depot file, to be damaged one by one.
#ifndef TEMBRA_TESTS_DATABASE_DEPOT_WORDS_H
#define TEMBRA_TESTS_DATABASE_DEPOT_WORDS_H

#include <cstddef>
#include <vector>

#include "kit/database.h"

namespace depot {

// Offsets of words in the header, and in a record's own header.
constexpr std::size_t kFlags = 16, kFileSize = 24, kBuckets = 32, kRecords = 40, kFirstBucket = 48;
constexpr std::size_t kKeySize = 8, kValueSize = 12, kPadding = 16, kLeft = 20, kRight = 24, kRecordHeader = 28;

class Words {
 public:
  explicit Words(kit::Bytes file);

  [[nodiscard]] const kit::Bytes& file() const { return file_; }
  [[nodiscard]] kit::Bytes& file() { return file_; }
  // As they were before any damage.
  [[nodiscard]] int buckets() const { return buckets_; }
  [[nodiscard]] std::size_t records() const { return records_.size(); }
  [[nodiscard]] int offsetOf(std::size_t record) const { return static_cast<int>(records_.at(record)); }
  [[nodiscard]] int lengthOf(std::size_t record) const { return offsetOf(record + 1) - offsetOf(record); }
  [[nodiscard]] std::size_t bucketOf(const char* key) const;

  [[nodiscard]] int get(std::size_t offset) const;
  void set(std::size_t offset, int value);
  [[nodiscard]] int getIn(std::size_t record, std::size_t offset) const { return get(records_.at(record) + offset); }
  void setIn(std::size_t record, std::size_t offset, int value) { set(records_.at(record) + offset, value); }

  /// Gives a record sizes whose sum, computed as int, leads so many bytes forward or back.
  void leadBy(std::size_t record, long long bytes);
  /// Both links of the record lead to the other one.
  void leadTo(std::size_t record, std::size_t other);

 private:
  kit::Bytes file_;
  int buckets_;
  std::vector<std::size_t> records_;
};

}  // namespace depot

#endif
