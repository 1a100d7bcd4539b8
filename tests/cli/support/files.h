// The files and databases of a test of the command line.
#ifndef TEMBRA_TESTS_CLI_FILES_H
#define TEMBRA_TESTS_CLI_FILES_H

#include <string>

#include "kit/database.h"
#include "kit/text.h"

namespace tembra::test {

using kit::Database;
using kit::Device;
using kit::OpenDatabase;
using kit::readFile;
using kit::writeFile;

/// Where the library looks for it.
inline constexpr const char* kDatabase = kit::kDatabasePath;

/// The file of a database of 50 devices, whose records stand in the order of their ids from 1 on.
inline std::string healthyDatabase() {
  Database database("/tmp/other");
  for (int id = 1; id <= 50; ++id) database.put(Device(id, "x").type("Siren").zwave(5));
  database.index(50, 1, "behind the devices");
  return readFile("/tmp/other");
}

}  // namespace tembra::test

#endif
