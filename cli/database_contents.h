// What stands in the device database, as far as it can be read.
#ifndef TEMBRA_CLI_DATABASE_CONTENTS_H
#define TEMBRA_CLI_DATABASE_CONTENTS_H

#include <depot.h>

#include <string>
#include <vector>

namespace tembra::cli {

struct StoredRecord {
  std::string key;
  std::string value;  ///< as much of it as a device record has
};

struct DatabaseContents {
  std::vector<StoredRecord> records;  ///< in the order of the file
  bool areComplete;                   ///< false: the file is damaged, and there may have been more
};

/// Goes from record to record and follows no link, so that damage loses what stands behind it and nothing else.
[[nodiscard]] DatabaseContents readContents(DEPOT* depot);

}  // namespace tembra::cli

#endif
