// The name of the file that the Depot library's repair writes beside a database.
#ifndef TEMBRA_DEPOT_TEMPORARY_NAME_H
#define TEMBRA_DEPOT_TEMPORARY_NAME_H

#include <climits>

namespace tembra::depot {

/// The repair opens whatever has this name: another user's link or file, too. So the name is taken before. In a folder
/// with the sticky bit nobody else can then take it away.
class TemporaryName {
 public:
  explicit TemporaryName(const char* path);

  /// Makes an empty file of this user's own, which nobody else has open. False when the name is not to be had: a
  /// folder, or another user's file that this user may not delete, has it.
  [[nodiscard]] bool take() const;

  /// Whether the name is free now.
  bool drop() const;

 private:
  char name_[PATH_MAX];
};

}  // namespace tembra::depot

#endif
