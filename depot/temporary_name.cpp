#include "depot/temporary_name.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <cstring>

namespace tembra::depot {
namespace {

constexpr char kSuffix[] = ".dptmp";

}  // namespace

TemporaryName::TemporaryName(const char* path) {
  const std::size_t length = strnlen(path, sizeof name_ - sizeof kSuffix);
  std::memcpy(name_, path, length);
  std::memcpy(name_ + length, kSuffix, sizeof kSuffix);
}

// Between the two calls another user may make a file of this name again.
bool TemporaryName::take() const {
  constexpr int kTries = 3;
  for (int tries = 0; tries < kTries; ++tries) {
    if (!drop()) return false;
    const int descriptor = open(name_, O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, S_IRUSR | S_IWUSR);
    if (descriptor >= 0) {
      close(descriptor);
      return true;
    }
    if (errno != EEXIST) return false;
  }
  return false;
}

bool TemporaryName::drop() const { return unlink(name_) == 0 || errno == ENOENT; }

}  // namespace tembra::depot
