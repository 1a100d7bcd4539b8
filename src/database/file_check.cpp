#include "database/file_check.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <climits>

#include "database/depot_file.h"
#include "database/search_trees.h"

namespace tembra {
namespace {

constexpr long long kSmallFile = 1 << 20;
constexpr long long kMostGrowth = 4;

// The library computes an offset as int: behind a record that seems to end beyond its range the walk turns back. Only
// a record that the walk hands out counts; past a deleted one it fails.
bool turnsBack(const DepotFile& file, long long offset, const DepotRecord& record) {
  const bool isHandedOut = !record.isDeleted() && offset + record.keyEnd() <= file.size();
  return isHandedOut && offset + record.end() > INT_MAX;
}

bool walkAndSearchesEnd(DepotFile& file, const DepotHeader& header) {
  LinkOrder order(file.size());
  if (!order.canBeSeen()) return true;
  bool walkEnds = true;
  forEachRoot(file, header, [&](int root) { return order.follow(root); });
  forEachRecord(file, header, [&](long long offset, const DepotRecord& record) {
    walkEnds = walkEnds && !turnsBack(file, offset, record);
    order.add(offset, record);
  });
  return walkEnds && (order.isKept() || searchesEnd(file, header));
}

// The repair takes any record for readable, and stays for ever at one that seems to have no length.
bool repairWalkEnds(DepotFile& file, const DepotHeader& header) {
  DepotRecord record{};
  for (long long at = header.firstRecord(); file.read(at, record);) {
    const auto length = static_cast<int>(record.end());
    if (length == 0) return false;
    if (length < 0 || at + length > INT_MAX) return true;
    at += length;
  }
  return true;
}

// The repaired file gets two buckets for each record that the header speaks of, computed as int. A file that was cut
// may rightly speak of more than it has.
bool repairedFileIsSmall(const DepotFile& file, const DepotHeader& header) {
  const auto buckets = static_cast<int>(2LL * header.records);
  return buckets * static_cast<long long>(sizeof(int)) <= std::max(kSmallFile, kMostGrowth * file.size());
}

}  // namespace

// The library computes the end of the buckets as int, too. What cannot be looked at is trusted: only damage that was
// seen may cost a file.
bool isSafeToRead(int descriptor) {
  DepotFile file(descriptor);
  DepotHeader header{};
  if (!file.read(0, header)) return true;
  return header.buckets > 0 && header.firstRecord() <= file.size() && walkAndSearchesEnd(file, header);
}

bool isSafeToRepair(const char* path) {
  const int descriptor = open(path, O_RDONLY | O_CLOEXEC);
  if (descriptor < 0) return true;
  DepotFile file(descriptor);
  DepotHeader header{};
  const bool safe = !file.read(0, header) || (repairedFileIsSmall(file, header) && repairWalkEnds(file, header));
  close(descriptor);
  return safe;
}

}  // namespace tembra
