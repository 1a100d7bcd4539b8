// The search trees of a Depot file. A search that comes to a record a second time never ends.
#ifndef TEMBRA_DATABASE_SEARCH_TREES_H
#define TEMBRA_DATABASE_SEARCH_TREES_H

#include "database/depot_file.h"
#include "database/offset_set.h"

namespace tembra {

/// Whether every link leads to a linked record, and no two to the same one: then no search meets a record twice. True
/// of every healthy file, and found out in one pass over its records.
class LinkOrder {
 public:
  explicit LinkOrder(long long fileSize) : fileSize_(fileSize), linked_(fileSize), targets_(fileSize) {}

  /// False for want of memory; nothing else may be called then.
  [[nodiscard]] bool canBeSeen() const { return linked_.isThere() && targets_.isThere(); }

  void add(long long offset, const DepotRecord& record) {
    if (!record.isLinked()) return;
    linked_.add(offset);
    follow(record.left);
    follow(record.right);
  }

  /// A link, of a record or of a bucket.
  bool follow(int target) {
    if (target == 0) return true;
    kept_ = kept_ && target > 0 && target < fileSize_ && !targets_.has(target);
    if (kept_) targets_.add(target);
    return kept_;
  }

  [[nodiscard]] bool isKept() const { return kept_ && targets_.isWithin(linked_); }

 private:
  long long fileSize_;
  OffsetSet linked_;
  OffsetSet targets_;
  bool kept_ = true;
};

/// Whether every search ends, found out by following every link. True also of links that lead nowhere, where a search
/// ends, too, and of a file that cannot be looked at for want of memory.
bool searchesEnd(DepotFile& file, const DepotHeader& header);

/// The same of the one bucket whose link stands at this offset.
bool searchesEnd(DepotFile& file, long long bucketOffset);

}  // namespace tembra

#endif
