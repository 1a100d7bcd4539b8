// Damage that must not reach the Depot library, because that library would crash or never return. Any other damage the
// Depot library notices by itself.
#ifndef TEMBRA_DEPOT_CHECK_H
#define TEMBRA_DEPOT_CHECK_H

namespace tembra::depot {

enum class Safety {
  kSafe,
  kUnsafe,
  kUnknown  ///< the system did not let the file be looked at
};

/// What looking at a file told.
struct Look {
  Safety safety = Safety::kUnknown;
  int mostKeys = 0;              ///< a walk through the keys has to end after so many: it turns back there
  bool everySearchEnds = false;  ///< for any key, not only for those that were looked at
};

/// Looks at what going through all keys of an open file takes, with getting the value of each. Reads by the Depot
/// library's own descriptor: closing another one of the same file would drop its lock.
Look lookAtWalk(int descriptor);

/// Looks at what getting the value of one key takes, of at most `kLongestKey` bytes: its cost does not grow with the
/// file.
Look lookAtKey(int descriptor, const char* key);

/// Whether the file is as long as its number of buckets asks for. The Depot library reads behind its map otherwise.
bool hasItsBuckets(int descriptor);

/// Whether a file that is not open claims more buckets than it has: then opening it fails with ENOMEM although memory
/// is not short.
bool lacksItsBuckets(const char* path);

}  // namespace tembra::depot

#endif
