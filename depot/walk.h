// The walk through a Depot file, record by record.
#ifndef TEMBRA_DEPOT_WALK_H
#define TEMBRA_DEPOT_WALK_H

#include "depot/file.h"

namespace tembra::depot {

/// Calls `visit(offset, record)` for the records of the Depot library's walk, deleted ones included, until it returns
/// false. False when the walk turns back, which the Depot library does for ever: the walk ends there. (Behind a deleted
/// record a negative offset makes the Depot library fail, which is an end, too.)
template <typename Visit>
bool forEachRecord(File& file, const Header& header, Visit visit) {
  Record record{};
  for (long long at = header.firstRecord(), next = 0; file.read(at, record) && record.isReadable(); at = next) {
    if (!visit(at, record)) return true;
    if (!record.isDeleted() && at + record.keyEnd() > file.size()) return true;
    next = record.nextFrom(at);
    if (next <= at) return record.isDeleted() && next < 0;
  }
  return true;
}

struct Walk {
  int keys = 0;  ///< that it comes to, records which are not deleted
  bool turnsBack = false;
  bool isInOrder = false;  ///< one link leads to each record, and none elsewhere: then every search ends
};

/// One pass over the buckets and the records.
Walk walk(File& file, const Header& header);

}  // namespace tembra::depot

#endif
