// What a value of a Z-Wave node means: the list by which the service is judged.
#ifndef TEMBRA_TESTS_ORACLE_INDEX_ROWS_H
#define TEMBRA_TESTS_ORACLE_INDEX_ROWS_H

#include <span>

namespace oracle {

/// A value that gets no index entry.
constexpr int kUndefined = 0;

/// Every command class that has no row of its own.
constexpr int kOtherClass = -1;

struct IndexRow {
  int commandClass;
  int first;  // index of the value, from
  int last;   // to; the first row that fits counts, so a row "0 to 255" is also "any other"
  int type;   // index type
};

std::span<const IndexRow> indexRows();

const IndexRow& indexRow(int commandClass, int index);

}  // namespace oracle

#endif
