#include "file_status.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <optional>

#include "kit/faults.h"
#include "kit/real_libc.h"

namespace status {

Narrow narrow = Narrow::kNobody;

namespace {

constexpr uid_t kAnother = 12345;
std::optional<ino_t> givenAway;
int questionsLeft = 0;  // of the library, that are answered as before

bool isGivenAway(ino_t file, const void* site) {
  if (givenAway != file) return false;
  if (questionsLeft <= 0) return true;
  if (kit::isInLibrary(site)) --questionsLeft;
  return false;
}

int told(int result, struct stat& status, const void* site) {
  if (result != 0) return result;
  if (isGivenAway(status.st_ino, site)) status.st_uid = kAnother;
  const bool isNarrow = narrow == Narrow::kEverybody || (narrow == Narrow::kTheLibrary && kit::isInLibrary(site));
  if (!isNarrow || status.st_mtime <= INT_MAX) return 0;
  errno = EOVERFLOW;
  return -1;
}

}  // namespace

void giveAway(const char* path) {
  struct stat file = {};
  givenAway.reset();
  questionsLeft = 0;
  if (lchown(path, kAnother, kAnother) != 0 && lstat(path, &file) == 0) givenAway = file.st_ino;
}

void giveAwayAfter(const char* path, int questions) {
  struct stat file = {};
  givenAway.reset();
  if (lstat(path, &file) != 0) return;
  givenAway = file.st_ino;
  questionsLeft = questions;
}

}  // namespace status

extern "C" int fstat(int descriptor, struct stat* status) noexcept {
  KIT_REAL(fstat);
  return status::told(real(descriptor, status), *status, __builtin_return_address(0));
}

extern "C" int lstat(const char* name, struct stat* status) noexcept {
  KIT_REAL(lstat);
  return status::told(real(name, status), *status, __builtin_return_address(0));
}

extern "C" int stat(const char* name, struct stat* status) noexcept {
  KIT_REAL(stat);
  return status::told(real(name, status), *status, __builtin_return_address(0));
}
