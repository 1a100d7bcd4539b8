// What the Depot library's repair of a file would come to, found out before it begins.
#ifndef TEMBRA_DEPOT_REPAIR_H
#define TEMBRA_DEPOT_REPAIR_H

#include "depot/open_file.h"

namespace tembra::depot {

enum class Outlook {
  kRefused,  ///< it would never end, or the file may be one that others have put in this place
  kNotNow,   ///< it would run out of disk space half-way and take the rest with it, or the file cannot be looked at
  kFine,
  kNotOpen  ///< the file does not open; errno says why
};

/// Prepares the repair of a file that is not open: looks at it and writes the number of records to repair into its
/// header, because the repair makes room for as many as the header claims. Holds the writer's lock of the file for its
/// life; the repair itself takes none, and drops this one when it ends.
class Preparation {
 public:
  explicit Preparation(const char* path);

  [[nodiscard]] Outlook outlook() const { return outlook_; }

 private:
  Outlook prepare();

  const OpenFile file_;
  Outlook outlook_;
};

}  // namespace tembra::depot

#endif
