// Which device type a Z-Wave node of a generic and a specific class is, and what the log says of it: the list by which
// the service is judged.
#ifndef TEMBRA_TESTS_CLASSIFY_CLASS_ROWS_H
#define TEMBRA_TESTS_CLASSIFY_CLASS_ROWS_H

#include <vector>

namespace classify {

/// Any class that no row names.
constexpr int kOther = -1;

struct ClassRow {
  int generic;
  int specific;
  int type;
  const char* text;                   // the whole log line
  std::vector<unsigned char> classes  // command classes that together make it another type
      = {};
  int typeWithClasses = 0;  // that type
};

const std::vector<ClassRow>& classRows();

/// The row that names the pair: the specific class, else its generic class's "other", else that of all classes.
const ClassRow& classRow(int generic, int specific);

}  // namespace classify

#endif
