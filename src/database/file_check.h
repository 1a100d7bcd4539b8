// Damage that must not reach the Depot library, because it crashes on it or never returns. Any other damage it notices
// by itself.
#ifndef TEMBRA_DATABASE_FILE_CHECK_H
#define TEMBRA_DATABASE_FILE_CHECK_H

namespace tembra {

/// Whether every walk and every search of a file that the Depot library has opened comes to an end. Reads by the
/// library's own descriptor: closing another one of the same file would drop its lock.
bool isSafeToRead(int descriptor);

/// The same for the searches of one key, by the Depot library's first hash of it: all that reading one value takes.
bool isSafeToSearch(int descriptor, int hash);

enum class Repair {
  Refused,  ///< it would never end, or make a huge file
  NoRoom,   ///< it would run out of disk space half-way, and take what it had not copied yet with it
  Greedy,   ///< it ends, but asks for more memory than the file is long
  Modest,
  Unforeseen  ///< the file cannot be opened to be looked at; errno says why
};

/// What repairing a file that is not open comes to.
Repair foreseeRepair(const char* path);

/// Whether a file that is not open speaks of more buckets than it has: then it does not open for want of memory, which
/// is its own doing.
bool lacksItsBuckets(const char* path);

}  // namespace tembra

#endif
