#include "private_database.h"

#include <tembra/globals.h>

#include <cstdio>
#include <cstdlib>
#include <system_error>

#include "failure.h"

namespace tembra::cli {

PrivateDatabase::PrivateDatabase() : before_(std::filesystem::current_path()), nameBefore_(DBName) {
  std::string folder = (std::filesystem::temp_directory_path() / "tembra-XXXXXX").string();
  if (mkdtemp(folder.data()) == nullptr) throw Failure(kFailed, "there is no room for a temporary folder.");
  folder_ = folder;
  std::filesystem::current_path(folder_);
  std::snprintf(DBName, sizeof DBName, "ddb");
}

PrivateDatabase::~PrivateDatabase() {
  std::error_code ignored;
  std::filesystem::current_path(before_, ignored);
  std::filesystem::remove_all(folder_, ignored);
  std::snprintf(DBName, sizeof DBName, "%s", nameBefore_.c_str());
}

}  // namespace tembra::cli
