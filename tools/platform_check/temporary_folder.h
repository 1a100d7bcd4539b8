// A folder in /tmp, where the device database lies, too.
#ifndef TEMBRA_TOOLS_PLATFORM_CHECK_TEMPORARY_FOLDER_H
#define TEMBRA_TOOLS_PLATFORM_CHECK_TEMPORARY_FOLDER_H

#include <dirent.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <string>

namespace tembra::platform_check {

/// Goes with the files in it.
class TemporaryFolder {
 public:
  TemporaryFolder() {
    if (mkdtemp(path_.data()) != nullptr) return;
    std::perror("tembra-platform-check: a folder in /tmp");
    std::exit(3);
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;
  ~TemporaryFolder() {
    if (DIR* const folder = opendir(path_.c_str())) {
      while (const dirent* entry = readdir(folder)) unlinkat(dirfd(folder), entry->d_name, 0);
      closedir(folder);
    }
    rmdir(path_.c_str());
  }
  [[nodiscard]] const std::string& path() const { return path_; }

 private:
  std::string path_ = "/tmp/tembra-platform-check-XXXXXX";
};

}  // namespace tembra::platform_check

#endif
