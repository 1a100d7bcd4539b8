#include "support/private_folder.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <string>

#include "support/invariant.h"

namespace fuzz {
namespace {

namespace fs = std::filesystem;

constexpr const char* kMemoryFolder = "/dev/shm";

fs::path parentFolder() {
  const char* chosen = std::getenv("TMPDIR");
  if (chosen != nullptr) return chosen;
  return access(kMemoryFolder, W_OK) == 0 ? fs::path(kMemoryFolder) : fs::temp_directory_path();
}

class Folder {
 public:
  Folder() {
    std::string name = parentFolder() / "tembra-fuzz-XXXXXX";
    require(mkdtemp(name.data()) != nullptr, "a folder of its own");
    path_ = name;
    inside_ = open(name.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC);
    outside_ = open(".", O_PATH | O_DIRECTORY | O_CLOEXEC);
  }
  ~Folder() {
    std::error_code ignored;
    fs::remove_all(path_, ignored);
  }
  Folder(const Folder&) = delete;
  Folder& operator=(const Folder&) = delete;

  void enter() const { require(fchdir(inside_) == 0, "the folder is there"); }
  void leave() const { require(fchdir(outside_) == 0, "the way back is there"); }

 private:
  fs::path path_;
  int inside_;
  int outside_;
};

const Folder& folder() {
  static const Folder made;
  return made;
}

}  // namespace

void PrivateFolder::enter() { folder().enter(); }
void PrivateFolder::leave() { folder().leave(); }

}  // namespace fuzz
