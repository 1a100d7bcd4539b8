#include "database/depot_words.h"

#include <cstring>
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

}  // namespace depot
