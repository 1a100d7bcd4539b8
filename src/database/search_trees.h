// The search trees of a Depot file. A search that comes to a record a second time never ends.
#ifndef TEMBRA_DATABASE_SEARCH_TREES_H
#define TEMBRA_DATABASE_SEARCH_TREES_H

#include "database/depot_file.h"
#include "database/pages.h"

namespace tembra {

/// Whether every link leads to a linked record, and no two to the same one: then no search meets a record twice. True
/// of every healthy file, and found out in one pass over its records.
class LinkOrder {
 public:
  explicit LinkOrder(long long fileSize)
      : fileSize_(fileSize),
        pages_((indexOf(fileSize) + 1) * sizeof(Block), {smallHome_, sizeof smallHome_}),
        blocks_(pages_.as<Block>()) {}
  LinkOrder(const LinkOrder&) = delete;
  LinkOrder& operator=(const LinkOrder&) = delete;

  /// False for want of memory; nothing else may be called then.
  [[nodiscard]] bool canBeSeen() const { return pages_.isThere(); }

  void add(long long offset, const DepotRecord& record) {
    if (!record.isLinked()) return;
    Block& block = blocks_[indexOf(offset)];
    block.record = placeOf(offset);
    if (block.target == block.record) --missingRecords_;
    follow(record.left);
    follow(record.right);
  }

  /// A link, of a record or of a bucket.
  bool follow(int target) {
    if (target == 0) return true;
    kept_ = kept_ && target > 0 && target < fileSize_ && blocks_[indexOf(target)].target == 0;
    if (!kept_) return false;
    Block& block = blocks_[indexOf(target)];
    block.target = placeOf(target);
    if (block.target != block.record) ++missingRecords_;
    return true;
  }

  [[nodiscard]] bool isKept() const { return kept_ && missingRecords_ == 0; }

 private:
  // As many bytes as the shortest record has: no two begin in the same block. Of the one that does, and of the link
  // that leads there, the place in the block is remembered, from 1 on.
  struct Block {
    unsigned char record;
    unsigned char target;
  };
  static std::size_t indexOf(long long offset) { return static_cast<std::size_t>(offset) / sizeof(DepotRecord); }
  static unsigned char placeOf(long long offset) {
    return static_cast<unsigned char>(static_cast<std::size_t>(offset) % sizeof(DepotRecord) + 1);
  }

  long long fileSize_;
  Block smallHome_[12288];  // enough for a file of 344,000 bytes, 170 devices
  Pages pages_;
  Block* blocks_;
  long long missingRecords_ = 0;  // linked to, but not met yet
  bool kept_ = true;
};

/// Whether every search ends, found out by following every link. True also of links that lead nowhere, where a search
/// ends, too, and of a file that cannot be looked at for want of memory.
bool searchesEnd(DepotFile& file, const DepotHeader& header);

/// The same of the searches in the one bucket whose link stands at this offset.
bool searchesEndInBucket(DepotFile& file, long long bucketOffset);

}  // namespace tembra

#endif
