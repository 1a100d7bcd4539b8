#include "depot/ownership.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

namespace tembra::depot {
namespace {

bool isForeign(const struct stat& status) { return status.st_uid != 0 && status.st_uid != geteuid(); }

// After a question whose result is this one.
bool isOthers(int result, const struct stat& status) {
  if (result != 0) return errno != ENOENT;
  return isForeign(status) || (status.st_mode & (S_IWGRP | S_IWOTH)) != 0;
}

}  // namespace

bool isForeignLink(const char* path) {
  struct stat status = {};
  return lstat(path, &status) == 0 && S_ISLNK(status.st_mode) && isForeign(status);
}

bool isOthers(const char* path) {
  struct stat status = {};
  return isForeignLink(path) || isOthers(stat(path, &status), status);
}

bool isOthers(int descriptor) {
  struct stat status = {};
  return isOthers(fstat(descriptor, &status), status);
}

}  // namespace tembra::depot
