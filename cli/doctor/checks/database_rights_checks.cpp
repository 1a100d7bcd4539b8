// Who may use the file of the device database.
#include <fcntl.h>
#include <sys/stat.h>
#include <tembra/globals.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>

#include "cli/doctor/checks/checks.h"
#include "cli/doctor/facts/router.h"
#include "depot/open_file.h"

namespace tembra::cli::doctor {
namespace {

constexpr char kOneUser[] = "Run the HA server and the front ends as one user, and give the file to that user.";

// Nothing where there is no such file: another check says so.
bool findFile(struct stat& status) { return stat(DBName, &status) == 0 && S_ISREG(status.st_mode); }

Verdict noFile() { return well("There is no device database to ask about."); }

std::string modeText(mode_t mode) {
  char text[16];
  std::snprintf(text, sizeof text, "%04o", static_cast<unsigned>(mode & 07777U));
  return text;
}

/// The kernel's setting fs.protected_regular; 0 where it has none.
int protection() {
  std::ifstream file("/proc/sys/fs/protected_regular");
  int value = 0;
  file >> value;
  return file ? value : 0;
}

// As the kernel decides for an opening with "create" of another user's file.
bool isRefused(const struct stat& file, const struct stat& folder, uid_t user, int value) {
  if ((folder.st_mode & S_ISVTX) == 0 || file.st_uid == folder.st_uid || file.st_uid == user) return false;
  const bool isForAll = (folder.st_mode & S_IWOTH) != 0;
  const bool isForGroup = (folder.st_mode & S_IWGRP) != 0;
  return (isForAll && value >= 1) || (isForGroup && value >= 2);
}

}  // namespace

Verdict checkDatabaseOwner(Router& router) {
  struct stat status = {};
  if (!findFile(status)) return noFile();
  const std::string owner = userName(status.st_uid);
  for (const uid_t user : router.databaseUsers()) {
    if (user == status.st_uid) continue;
    return finding("The device database belongs to another user than a program that uses it.",
                   router.databaseName() + " belongs to user " + owner +
                       "; the HA server or a front end runs as user " + userName(user) + ".",
                   kOneUser);
  }
  return well("The device database belongs to user " + owner + ".");
}

Verdict checkDatabaseMode(Router& router) {
  struct stat status = {};
  if (!findFile(status)) return noFile();
  const std::string mode = modeText(status.st_mode);
  if ((status.st_mode & (S_IWGRP | S_IWOTH)) == 0)
    return well("Only its user may write the device database: " + mode + ".");
  return finding("Other users may write the device database, and end front ends by it.",
                 router.databaseName() + " has mode " + mode + ".",
                 "chmod go-w " + router.databaseName() + ", and a umask of 0077 for the HA server.");
}

// The opening of a look-up, without "create": nothing is made here. A user of no front end need not open it.
Verdict checkDatabaseAccess(Router& router) {
  struct stat status = {};
  if (!findFile(status)) return noFile();
  const depot::OpenFile file(DBName, O_RDWR);
  if (file.isOpen()) return well("A front end of this user can open the device database.");
  const int error = errno;
  const std::string user = userName(geteuid());
  if (error == EACCES && !router.databaseUsers().contains(geteuid())) {
    return note("No front end may run as user " + user + ", which may not write the device database.");
  }
  return finding("A front end of this user cannot open the device database, and would delete it if it may.",
                 "open " + router.databaseName() + " for writing as user " + user + ": " + std::strerror(error) + ".",
                 kOneUser);
}

Verdict checkDatabaseProtection(Router& router) {
  struct stat file = {};
  struct stat folder = {};
  const std::filesystem::path place = std::filesystem::path(DBName).parent_path();
  if (!findFile(file) || stat(place.empty() ? "." : place.c_str(), &folder) != 0) return noFile();
  const int value = protection();
  const auto isKeptOff = [&](uid_t user) { return isRefused(file, folder, user, value); };
  const std::string proof = "fs.protected_regular is " + std::to_string(value) + ", and the file belongs to user " +
                            userName(file.st_uid) + ".";
  const std::set<uid_t> users = router.databaseUsers();
  if (const auto refused = std::ranges::find_if(users, isKeptOff); refused != users.end()) {
    return finding("The kernel keeps user " + userName(*refused) +
                       " from opening the device database, which the library then deletes.",
                   proof, kOneUser);
  }
  if (!isKeptOff(geteuid())) return well("The kernel lets the front ends open the device database.");
  return note("No front end may run as user " + userName(geteuid()) +
                  ", which the kernel keeps from opening the device database.",
              proof);
}

}  // namespace tembra::cli::doctor
