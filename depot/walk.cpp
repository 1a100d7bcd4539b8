#include "depot/walk.h"

#include <cstdint>

namespace tembra::depot {
namespace {

/// Compares two collections of offsets without keeping them: the sum over scattered offsets is 0 when each stands in
/// both equally often. Otherwise the chance of a 0 is one in 2^64. An attacker could make a 0 on purpose. But an
/// attacker that can write the file can also keep its lock, and so hold up every reader.
class Balance {
 public:
  void link(int target) {
    if (target != 0) sum_ += scatter(static_cast<std::uint64_t>(target));
  }
  void record(long long offset) { sum_ -= scatter(static_cast<std::uint64_t>(offset)); }
  [[nodiscard]] bool isEven() const { return sum_ == 0; }

 private:
  // The last steps of the random number generator SplitMix64: every bit of the offset changes half of the bits.
  static std::uint64_t scatter(std::uint64_t bits) {
    bits = (bits ^ (bits >> 30)) * 0xBF58476D1CE4E5B9;
    bits = (bits ^ (bits >> 27)) * 0x94D049BB133111EB;
    return bits ^ (bits >> 31);
  }

  std::uint64_t sum_ = 0;
};

void addBuckets(File& file, const Header& header, Balance& balance) {
  constexpr int kAtOnce = 256;
  for (int bucket = 0; bucket < header.buckets; bucket += kAtOnce) {
    int links[kAtOnce];
    const int count = std::min(kAtOnce, header.buckets - bucket);
    if (!file.read(header.bucketOffset(bucket), links, sizeof(int) * static_cast<std::size_t>(count))) return;
    for (int i = 0; i < count; ++i) balance.link(links[i]);
  }
}

}  // namespace

// With one link to each record, a circle of records has no link left over that leads into it from a bucket.
Walk walk(File& file, const Header& header) {
  Walk walk;
  bool overflows = false;
  Balance balance;
  addBuckets(file, header, balance);
  walk.turnsBack = !forEachRecord(file, header, [&](long long offset, const Record& record) {
    if (!record.isDeleted()) ++walk.keys;
    overflows = overflows || record.overflows();
    if (record.isLinked()) {
      balance.record(offset);
      balance.link(record.left);
      balance.link(record.right);
    }
    return true;
  });
  walk.isInOrder = balance.isEven() && !overflows;
  return walk;
}

}  // namespace tembra::depot
