#include "depot/search.h"

#include <depot.h>

#include <climits>

namespace tembra::depot {
namespace {

// The Depot library hands out its first hash, which chooses the bucket (dpinnerhash), but not this one.
int secondHash(const char* key, int size) {
  unsigned sum = 19780211;
  for (int i = size - 1; i >= 0; --i) sum = sum * 37 + static_cast<unsigned char>(key[i]);
  return static_cast<int>((sum * 43321879) & INT_MAX);
}

/// A key on its way through a tree.
struct Key {
  const char* text;
  int size;
  int hash;
};

// Positive where the search goes left, negative where it goes right, 0 at the key itself.
bool compare(File& file, long long offset, const Record& record, const Key& key, int& order) {
  char other[kLongestKey];
  order = key.hash != record.secondHash ? (key.hash > record.secondHash ? 1 : -1) : key.size - record.keySize;
  if (order != 0) return true;
  if (!file.read(offset + static_cast<long long>(sizeof record), other, static_cast<std::size_t>(key.size))) {
    return false;
  }
  order = std::memcmp(key.text, other, static_cast<std::size_t>(key.size));
  return true;
}

Search resultAt(const File& file, long long offset, const Record& record) {
  if (record.overflows()) return Search::kDangerous;
  const long long end = offset + record.keyEnd() + std::min(record.valueSize, kMostOfValue);
  return end <= file.size() ? Search::kFinds : Search::kFails;
}

}  // namespace

Search search(File& file, const Header& header, const char* text) {
  const auto size = static_cast<int>(std::strlen(text));
  const Key key{text, size, secondHash(text, size)};
  int at = 0;
  if (!file.read(header.bucketOffset(dpinnerhash(text, size) % header.buckets), at)) return Search::kFails;
  Record record{};
  // No way without a circle has more records than fit into the file.
  for (long long left = file.size() / static_cast<long long>(sizeof record); at != 0; --left) {
    int order = 0;
    if (left < 0) return Search::kNeverEnds;
    if (!file.read(at, record) || !record.isReadable() || !compare(file, at, record, key, order)) return Search::kFails;
    if (order == 0 && !record.isDeleted()) return resultAt(file, at, record);
    at = order >= 0 ? record.left : record.right;
  }
  return Search::kFails;
}

}  // namespace tembra::depot
