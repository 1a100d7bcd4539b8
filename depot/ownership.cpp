#include "depot/ownership.h"

#include <sys/stat.h>
#include <unistd.h>

namespace tembra::depot {

bool isForeignLink(const char* path) {
  struct stat status = {};
  return lstat(path, &status) == 0 && S_ISLNK(status.st_mode) && status.st_uid != 0 && status.st_uid != geteuid();
}

}  // namespace tembra::depot
