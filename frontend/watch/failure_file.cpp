#include "failure_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <tembra/watch.h>
#include <unistd.h>

#include <exception>

#include "history.h"
#include "platform/descriptor.h"
#include "watch_address.h"
#include "watch_listener.h"

namespace tembra::frontend {
namespace {

constexpr mode_t kWhileItIsWritten = 0600;
constexpr mode_t kForTheGroup = 0640;

bool writeWhole(const Descriptor& file, const std::string& text, gid_t group) {
  return ::write(file.get(), text.data(), text.size()) == static_cast<ssize_t>(text.size()) &&
         fchown(file.get(), static_cast<uid_t>(-1), group) == 0 && fchmod(file.get(), kForTheGroup) == 0;
}

void replace(const std::string& path, const std::string& text, gid_t group) {
  const std::string draft = path + ".new";
  unlink(draft.c_str());  // of a process that died while it wrote
  const Descriptor file(open(draft.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, kWhileItIsWritten));
  if (!file.valid()) return;
  if (!writeWhole(file, text, group) || rename(draft.c_str(), path.c_str()) != 0) unlink(draft.c_str());
}

}  // namespace

void keepFailure(const std::string& watchPath) noexcept {
  try {
    sockaddr_un address{};
    if (!makeAddress(watchPath, address)) return;
    unsigned long long all = 0;
    replace(watchPath + TEMBRA_FAILURE_SUFFIX, history().behind(all), groupOfWatchFolder(watchPath));
  } catch (const std::exception&) {  // no memory, or no folder for it
  }
}

}  // namespace tembra::frontend
