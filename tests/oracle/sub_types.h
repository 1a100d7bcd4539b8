// The types that a user may choose instead of the one that a device was taken for.
#ifndef TEMBRA_TESTS_ORACLE_SUB_TYPES_H
#define TEMBRA_TESTS_ORACLE_SUB_TYPES_H

#include <cstddef>
#include <vector>

namespace oracle {

using Types = std::vector<int>;

/// The capabilities that the values of a generic device raise.
struct Capabilities {
  unsigned char basic = 0;
  unsigned char multilevel = 0;
  unsigned char binarySensor = 0;
  unsigned char acExtender = 0;
  bool operator==(const Capabilities&) const = default;
};

/// What is listed for a type: its sub-types, or a single 0; for a generic device it may be nothing at all. A generic
/// device's index table counts by its length as a text.
Types subTypesOf(int type, const Capabilities& raised, std::size_t indexTextLength);

}  // namespace oracle

#endif
