// What the Depot library's repair of a file would come to, found out before it begins.
#ifndef TEMBRA_DEPOT_REPAIR_H
#define TEMBRA_DEPOT_REPAIR_H

#include "depot/open_file.h"

namespace tembra::depot {

enum class Outlook {
  kRefused,  ///< it would never end, or the file may be one that others have put in this place
  kNotNow,   ///< it would run out of disk space half-way, the file cannot be looked at, or it is to be left alone
  kFine,
  kNotOpen  ///< the file does not open; errno says why
};

/// Prepares the repair of a file that is not open: looks at it and writes the number of records to repair into its
/// header, because the repair makes room for as many as the header claims. Holds the writer's lock of the file for its
/// life; the repair itself takes none, and drops this one when it ends. Can be told to leave a file of others alone,
/// see isOthers.
class Preparation {
 public:
  Preparation(const char* path, bool leavesOthersAlone);

  [[nodiscard]] Outlook outlook() const { return outlook_; }

 private:
  Outlook prepare(bool leavesOthersAlone);

  const OpenFile file_;
  Outlook outlook_;
};

}  // namespace tembra::depot

#endif
