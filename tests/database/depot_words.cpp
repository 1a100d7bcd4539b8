#include "database/depot_words.h"

#include <depot.h>

#include <cstring>
#include <limits>
#include <utility>

namespace depot {

Words::Words(kit::Bytes file) : file_(std::move(file)), buckets_(get(kBuckets)) {
  std::size_t offset = kFirstBucket + static_cast<std::size_t>(buckets_) * sizeof(int);
  while (offset + kRecordHeader <= file_.size()) {
    records_.push_back(offset);
    const int content = get(offset + kKeySize) + get(offset + kValueSize) + get(offset + kPadding);
    offset += kRecordHeader + static_cast<std::size_t>(content);
  }
}

int Words::get(std::size_t offset) const {
  int value = 0;
  std::memcpy(&value, &file_.at(offset), sizeof value);
  return value;
}

void Words::set(std::size_t offset, int value) { std::memcpy(&file_.at(offset), &value, sizeof value); }

std::size_t Words::bucketOf(const char* key) const {
  return kFirstBucket + sizeof(int) * static_cast<std::size_t>(dpinnerhash(key, -1) % buckets_);
}

void Words::leadBy(std::size_t record, long long bytes) {
  constexpr long long kWholeRange = 1LL << 32, kMost = std::numeric_limits<int>::max();
  const long long key = getIn(record, kKeySize), header = kRecordHeader;
  setIn(record, kValueSize, kMost);
  setIn(record, kPadding, static_cast<int>(kWholeRange + bytes - header - key - kMost));
}

void Words::leadTo(std::size_t record, std::size_t other) {
  setIn(record, kLeft, offsetOf(other));
  setIn(record, kRight, offsetOf(other));
}

}  // namespace depot
