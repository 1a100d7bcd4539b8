#include "sim/nest/authorisation.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <stdexcept>

#include "platform/descriptor.h"

namespace tembra::sim {
namespace {

[[noreturn]] void fail(const std::filesystem::path& file, const char* what) {
  throw std::runtime_error("the authorisation code " + file.string() + " cannot be " + what + ": " +
                           std::strerror(errno));
}

}  // namespace

// The default folder is one where everybody may put a link for us to follow.
void Authorisation::keep(const std::string& code) const {
  constexpr mode_t ownerOnly = S_IRUSR | S_IWUSR;
  const Descriptor file(open(file_.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_NOFOLLOW | O_CLOEXEC, ownerOnly));
  if (!file.valid() || write(file.get(), code.data(), code.size()) != static_cast<ssize_t>(code.size())) {
    fail(file_, "written");
  }
}

void Authorisation::forget() const {
  if (unlink(file_.c_str()) != 0 && errno != ENOENT) fail(file_, "removed");
}

}  // namespace tembra::sim
