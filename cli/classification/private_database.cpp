#include "cli/classification/private_database.h"

#include <tembra/globals.h>

#include <cstdio>
#include <cstdlib>
#include <system_error>

#include "cli/failure.h"

namespace tembra::cli {
namespace {

constexpr int kFirstDeviceId = 1;

std::filesystem::path makeFolder() {
  std::error_code failure;
  std::string folder = (std::filesystem::temp_directory_path(failure) / "tembra-XXXXXX").string();
  if (failure || mkdtemp(folder.data()) == nullptr) {
    throw Failure(kFailed, "a temporary folder cannot be made; is TMPDIR right?");
  }
  return folder;
}

}  // namespace

PrivateDatabase::PrivateDatabase() : nameBefore_(DBName) {
  std::error_code unknown;  // the working folder may be gone
  before_ = std::filesystem::current_path(unknown);
  folder_ = makeFolder();
  std::filesystem::current_path(folder_);
  std::snprintf(DBName, sizeof DBName, "ddb");
  DevId = kFirstDeviceId;
}

PrivateDatabase::~PrivateDatabase() {
  std::error_code ignored;
  std::filesystem::current_path(before_, ignored);
  std::filesystem::remove_all(folder_, ignored);
  std::snprintf(DBName, sizeof DBName, "%s", nameBefore_.c_str());
}

}  // namespace tembra::cli
