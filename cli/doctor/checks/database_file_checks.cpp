// The file of the device database: there, free, with room to be repaired.
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <tembra/globals.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>

#include "cli/doctor/checks/checks.h"
#include "cli/doctor/facts/router.h"

namespace tembra::cli::doctor {
namespace {

constexpr char kMove[] = "Move it away; the HA server makes a new file. With a file elsewhere, use --db.";

std::filesystem::path folderOfDatabase() {
  const std::filesystem::path folder = std::filesystem::path(DBName).parent_path();
  return folder.empty() ? "." : folder;
}

std::string processText(pid_t id) {
  const auto process = id > 0 ? findProcess(id) : std::nullopt;
  return process ? describe(*process) : "a process that the kernel does not name";
}

Verdict verdictOnMissing(const std::string& name) {
  struct stat link = {};
  if (lstat(DBName, &link) == 0) return finding("The device database is a link to nothing.", name + ".", kMove);
  return finding("There is no device database.", name + ": " + std::strerror(errno) + ".",
                 "Start the HA server, which makes the file. With a file elsewhere, use --db.");
}

std::string sizeText(long long bytes) { return std::to_string(bytes) + " bytes"; }

}  // namespace

Verdict checkDatabase(Router& router) {
  const std::string name = router.databaseName();
  struct stat status = {};
  if (stat(DBName, &status) != 0) return verdictOnMissing(name);
  if (S_ISDIR(status.st_mode)) return finding("A folder stands in the device database's place.", name + ".", kMove);
  if (!S_ISREG(status.st_mode)) return finding("The device database is no regular file.", name + ".", kMove);
  const int error = router.database().error;
  if (error == ELOOP) {
    return finding("The device database is a link of another user, which the library deletes.", name + ".", kMove);
  }
  if (error != 0 && error != EAGAIN) return note("The device database could not be read.", unreadProof(router));
  return well("The device database " + name + " is there: " + sizeText(status.st_size) + ", changed " +
              momentText(status.st_mtime) + ".");
}

Verdict checkDatabaseLock(Router& router) {
  const Snapshot& database = router.database();
  if (database.error != 0 && database.error != ENOENT && database.error != EAGAIN) {
    return note("Whether the device database is locked could not be told.", unreadProof(router));
  }
  if (database.error != EAGAIN) return well("Nobody keeps the device database locked.");
  const FileLock lock = database.lock.value_or(FileLock{});
  return finding("The device database stays locked, so every look-up waits.",
                 processText(lock.process) + " has " + (lock.isWriters ? "the writer's" : "a reader's") +
                     " lock of it for more than a second.",
                 "See what that process waits for, and end it if it hangs.");
}

// A repair writes a new file beside the old one.
Verdict checkDatabaseRoom(Router& router) {
  struct statvfs system = {};
  const std::filesystem::path folder = folderOfDatabase();
  if (statvfs(folder.c_str(), &system) != 0 || system.f_blocks == 0) {
    return note("The room for the device database cannot be told.",
                folder.string() + ": " + std::strerror(errno) + ".");
  }
  constexpr long long kLeast = 128LL * 1024;
  const long long room = static_cast<long long>(system.f_bavail) * static_cast<long long>(system.f_frsize);
  const long long needed = std::max(kLeast, 2 * router.database().size);
  if (room >= needed) return well("There is room for the device database: " + sizeText(room) + ".");
  return finding("There is too little room to write or repair the device database.",
                 sizeText(room) + " are free in its file system, of " + sizeText(needed) + " that it takes.",
                 "Delete what is not needed there.");
}

Verdict checkDatabaseRepair(Router& router) {
  const std::string name = std::string(DBName) + ".dptmp";
  struct stat status = {};
  struct stat folder = {};
  if (lstat(name.c_str(), &status) != 0) return well("A repair of the device database could begin.");
  const bool isSticky = stat(folderOfDatabase().c_str(), &folder) == 0 && (folder.st_mode & S_ISVTX) != 0;
  const bool isOthers = isSticky && geteuid() != 0 && status.st_uid != geteuid() && folder.st_uid != geteuid();
  if (!S_ISDIR(status.st_mode) && !isOthers) return well("A repair of the device database could begin.");
  return finding("The device database cannot be repaired, because the name of the new file is taken.",
                 router.databaseName() + ".dptmp belongs to user " + userName(status.st_uid) +
                     (S_ISDIR(status.st_mode) ? " and is a folder." : "."),
                 "Remove it.");
}

}  // namespace tembra::cli::doctor
