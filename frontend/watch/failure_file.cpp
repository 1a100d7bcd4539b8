#include "failure_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <tembra/watch.h>
#include <unistd.h>

#include <exception>

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
  const std::string draft = path + '.' + std::to_string(getpid()) + ".new";  // another process may write its own
  unlink(draft.c_str());                                                     // of a process that died while it wrote
  const Descriptor file(open(draft.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, kWhileItIsWritten));
  if (!file.valid()) return;
  if (!writeWhole(file, text, group) || rename(draft.c_str(), path.c_str()) != 0) unlink(draft.c_str());
}

}  // namespace

void keepFailure(const std::string& watchPath, const History& recorder) noexcept {
  try {
    sockaddr_un address{};
    if (!makeAddress(watchPath, address)) return;
    unsigned long long all = 0;
    const std::string text = recorder.behind(all);
    if (text.empty()) return;  // for want of memory
    replace(watchPath + TEMBRA_FAILURE_SUFFIX, text, groupOfWatchFolder(watchPath));
  } catch (const std::exception&) {  // no memory, or no folder for it
  }
}

}  // namespace tembra::frontend
