// Which device type a Z-Wave node of a generic and a specific class is, and what the log says of it: the list by which
// the service is judged.
#ifndef TEMBRA_TESTS_ORACLE_CLASS_ROWS_H
#define TEMBRA_TESTS_ORACLE_CLASS_ROWS_H

#include <span>

namespace oracle {

/// Every class that has no row of its own.
constexpr int kOther = -1;

struct ClassRow {
  int generic;
  int specific;
  int type;
  const char* text;               // the whole log line
  unsigned char classes[2] = {};  // command classes (0: none) that together make it another type
  int typeWithClasses = 0;        // that type
};

std::span<const ClassRow> classRows();

/// The row of the pair: by name, else its generic class's "other", else the one of all other generic classes.
const ClassRow& classRow(int generic, int specific);

}  // namespace oracle

#endif
