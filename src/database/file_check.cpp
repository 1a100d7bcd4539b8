// What cannot be looked at is trusted: only damage that was seen may cost a file.
#include "database/file_check.h"

#include <fcntl.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <algorithm>
#include <climits>

#include "database/depot_file.h"
#include "database/search_trees.h"

namespace tembra {
namespace {

constexpr long long kSmallFile = 1 << 20;
constexpr long long kMostGrowth = 4;
constexpr long long kRoomToSpare = 1 << 16;

bool walkAndSearchesEnd(DepotFile& file, const DepotHeader& header) {
  LinkOrder order(file.size());
  const bool seesOrder = order.canBeSeen();
  if (seesOrder) forEachRoot(file, header, [&](int root) { return order.follow(root); });
  const bool walkEnds = forEachRecord(file, header, [&](long long offset, const DepotRecord& record) {
    if (seesOrder) order.add(offset, record);
  });
  return walkEnds && (!seesOrder || order.isKept() || searchesEnd(file, header));
}

// The Depot library computes the end of the buckets as int, too.
bool hasItsBuckets(const DepotFile& file, const DepotHeader& header) {
  return header.buckets > 0 && header.firstRecord() <= file.size();
}

// The repair takes any record for readable, and stays for ever at one that seems to have no length.
Repair foreseeWalk(DepotFile& file, const DepotHeader& header) {
  Repair outlook = Repair::Modest;
  DepotRecord record{};
  for (long long at = static_cast<int>(header.firstRecord()); file.read(at, record);) {
    if (std::max(record.keySize, record.valueSize) > file.size()) outlook = Repair::Greedy;
    const auto length = static_cast<int>(record.end());
    if (length == 0) return Repair::Refused;
    if (length < 0 || at + length > INT_MAX) break;
    at += length;
  }
  return outlook;
}

// The repaired file gets two buckets for each record that the header speaks of, computed as int. A file that was cut
// may rightly speak of more than it has.
long long bucketBytes(const DepotHeader& header) {
  return static_cast<int>(2LL * header.records) * static_cast<long long>(sizeof(int));
}

bool repairedFileIsSmall(const DepotFile& file, const DepotHeader& header) {
  return bucketBytes(header) <= std::max(kSmallFile, kMostGrowth * file.size());
}

// The repair writes a new file beside the old one, and then copies it over the old one, which it cuts first: whatever
// has no room then is gone. A file system that tells of no blocks has no limit.
bool hasRoomToRepair(int descriptor, const DepotFile& file, const DepotHeader& header) {
  struct statvfs status = {};
  if (fstatvfs(descriptor, &status) != 0 || status.f_blocks == 0) return true;
  const long long repaired = file.size() + bucketBytes(header) + kRoomToSpare;
  return static_cast<long long>(status.f_bavail) * static_cast<long long>(status.f_frsize) >= 2 * repaired;
}

/// A file for as long as it is looked at. What stands in its place may be a pipe, whose opening would wait for a
/// writer.
class OpenFile {
 public:
  explicit OpenFile(const char* path) : descriptor_(open(path, O_RDONLY | O_CLOEXEC | O_NONBLOCK)) {}
  ~OpenFile() {
    if (isOpen()) close(descriptor_);
  }
  OpenFile(const OpenFile&) = delete;
  OpenFile& operator=(const OpenFile&) = delete;
  [[nodiscard]] bool isOpen() const { return descriptor_ >= 0; }
  [[nodiscard]] int descriptor() const { return descriptor_; }

 private:
  int descriptor_;
};

}  // namespace

bool isSafeToRead(int descriptor) {
  DepotFile file(descriptor);
  DepotHeader header{};
  if (!file.read(0, header)) return true;
  return hasItsBuckets(file, header) && walkAndSearchesEnd(file, header);
}

bool isSafeToSearch(int descriptor, int hash) {
  DepotFile file(descriptor, sizeof(DepotHeader));
  DepotHeader header{};
  if (!file.read(0, header)) return true;
  return hasItsBuckets(file, header) && searchesEndInBucket(file, header.bucketOffset(hash % header.buckets));
}

Repair foreseeRepair(const char* path) {
  const OpenFile file(path);
  if (!file.isOpen()) return Repair::Unforeseen;
  DepotFile depot(file.descriptor());
  DepotHeader header{};
  if (!depot.read(0, header)) return Repair::Modest;
  if (!repairedFileIsSmall(depot, header)) return Repair::Refused;
  const Repair outlook = foreseeWalk(depot, header);
  return outlook == Repair::Refused || hasRoomToRepair(file.descriptor(), depot, header) ? outlook : Repair::NoRoom;
}

bool lacksItsBuckets(const char* path) {
  const OpenFile file(path);
  if (!file.isOpen()) return false;
  DepotFile depot(file.descriptor(), sizeof(DepotHeader));
  DepotHeader header{};
  return depot.read(0, header) && !hasItsBuckets(depot, header);
}

}  // namespace tembra
