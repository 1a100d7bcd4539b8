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
  explicit LinkOrder(long long fileSize)
      : fileSize_(fileSize), marks_(kMarks * fileSize, {smallHome_, sizeof smallHome_}) {}
  LinkOrder(const LinkOrder&) = delete;
  LinkOrder& operator=(const LinkOrder&) = delete;

  /// False for want of memory; nothing else may be called then.
  [[nodiscard]] bool canBeSeen() const { return marks_.isThere(); }

  void add(long long offset, const DepotRecord& record) {
    if (!record.isLinked()) return;
    if (marks_.has(targetMark(offset))) --missingRecords_;
    marks_.add(recordMark(offset));
    follow(record.left);
    follow(record.right);
  }

  /// A link, of a record or of a bucket.
  bool follow(int target) {
    if (target == 0) return true;
    kept_ = kept_ && target > 0 && target < fileSize_ && !marks_.has(targetMark(target));
    if (!kept_) return false;
    marks_.add(targetMark(target));
    if (!marks_.has(recordMark(target))) ++missingRecords_;
    return true;
  }

  [[nodiscard]] bool isKept() const { return kept_ && missingRecords_ == 0; }

 private:
  // Each offset has two marks, side by side: both are looked at together.
  static constexpr long long kMarks = 2;
  static long long recordMark(long long offset) { return kMarks * offset; }
  static long long targetMark(long long offset) { return kMarks * offset + 1; }

  long long fileSize_;
  unsigned char smallHome_[24576];  // enough for a file of 98,300 bytes, a dozen devices
  OffsetSet marks_;
  long long missingRecords_ = 0;  // linked to, but not met yet
  bool kept_ = true;
};

/// Whether every search ends, found out by following every link. True also of links that lead nowhere, where a search
/// ends, too, and of a file that cannot be looked at for want of memory.
bool searchesEnd(DepotFile& file, const DepotHeader& header);

/// The same of the searches in the one bucket whose link stands at this offset.
bool searchEnds(DepotFile& file, long long bucketOffset);

}  // namespace tembra

#endif
