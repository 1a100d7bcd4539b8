// A file that is open for as long as somebody looks at it.
#ifndef TEMBRA_DEPOT_OPEN_FILE_H
#define TEMBRA_DEPOT_OPEN_FILE_H

#include <fcntl.h>
#include <unistd.h>

namespace tembra::depot {

class OpenFile {
 public:
  /// What stands in the file's place may be a pipe, whose opening would wait for the other end.
  OpenFile(const char* path, int mode) : descriptor_(open(path, mode | O_CLOEXEC | O_NONBLOCK, 0600)) {}
  ~OpenFile() {
    if (isOpen()) close(descriptor_);
  }
  OpenFile(const OpenFile&) = delete;
  OpenFile& operator=(const OpenFile&) = delete;

  [[nodiscard]] bool isOpen() const { return descriptor_ >= 0; }
  [[nodiscard]] int descriptor() const { return descriptor_; }

 private:
  int descriptor_;
};

}  // namespace tembra::depot

#endif
