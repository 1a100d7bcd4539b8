// How the Depot library searches a key, to find out beforehand whether the search ends.
#ifndef TEMBRA_DEPOT_SEARCH_H
#define TEMBRA_DEPOT_SEARCH_H

#include "depot/file.h"

namespace tembra::depot {

constexpr int kLongestKey = 1024;  ///< that a search can be followed for
constexpr int kMostOfValue = 512;  ///< that the library reads of a value

enum class Search {
  kFinds,      ///< the key, and can read its value
  kFails,      ///< there is no such key, or something on the way cannot be read
  kNeverEnds,  ///< it comes to a record a second time
  kDangerous   ///< reading the value it finds would copy what stands behind a buffer of the Depot library
};

Search search(File& file, const Header& header, const char* key);

}  // namespace tembra::depot

#endif
