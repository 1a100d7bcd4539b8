#include "kit/library_sockets.h"

namespace kit {

void LibrarySockets::opened(int descriptor) {
  const std::lock_guard<std::mutex> lock(mutex_);
  open_.insert(descriptor);
}

void LibrarySockets::bound(int descriptor) {
  const std::lock_guard<std::mutex> lock(mutex_);
  open_.insert(descriptor);  // it may be a duplicate of the one that was opened
  bound_ = descriptor;
}

void LibrarySockets::ended(int descriptor) {
  const std::lock_guard<std::mutex> lock(mutex_);
  if (bound_ == descriptor) bound_ = -1;
}

bool LibrarySockets::closed(int descriptor) {
  const std::lock_guard<std::mutex> lock(mutex_);
  if (bound_ == descriptor) bound_ = -1;
  return open_.erase(descriptor) != 0;
}

bool LibrarySockets::owns(int descriptor) {
  const std::lock_guard<std::mutex> lock(mutex_);
  return open_.contains(descriptor);
}

bool LibrarySockets::listening() {
  const std::lock_guard<std::mutex> lock(mutex_);
  return bound_ != -1;
}

// Never destroyed: the library's thread may still be there at exit.
LibrarySockets& librarySockets() {
  static LibrarySockets& one = *new LibrarySockets;
  return one;
}

}  // namespace kit
