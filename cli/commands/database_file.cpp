#include "cli/commands/database_file.h"

#include <sys/stat.h>
#include <tembra/globals.h>
#include <unistd.h>

#include <cstring>
#include <filesystem>
#include <system_error>

#include "cli/failure.h"

namespace tembra::cli {

namespace fs = std::filesystem;

void useDatabase(const std::string& path) {
  if (path.empty()) return;
  std::string name = path;
  if (name.size() >= sizeof DBName) {
    name = fs::path(path).filename();
    if (name.empty() || name.size() >= sizeof DBName) {
      throw Failure(kUsage, "--db " + path + ": the file's name may have at most 9 characters.");
    }
    std::error_code failure;
    if (fs::path(path).has_parent_path()) fs::current_path(fs::path(path).parent_path(), failure);
    if (failure) throw Failure(kUsage, "--db " + path + ": its folder cannot be entered (" + failure.message() + ").");
  }
  std::strcpy(DBName, name.c_str());
}

std::string databasePath(const Options& options) { return options.database.empty() ? DBName : options.database; }

void complainOfForeignDatabase(const Context& context) {
  struct stat file = {};
  if (stat(DBName, &file) != 0 || file.st_uid == geteuid()) return;
  context.display.complain("the device database " + databasePath(context.options) + " belongs to another user (" +
                           std::to_string(file.st_uid) +
                           "): the home-automation server and its front ends should run as the same user.");
}

}  // namespace tembra::cli
