// The library's own descriptors among those of the test process.
#ifndef TEMBRA_TESTS_KIT_LIBRARY_SOCKETS_H
#define TEMBRA_TESTS_KIT_LIBRARY_SOCKETS_H

#include <mutex>
#include <set>

namespace kit {

class LibrarySockets {
 public:
  void opened(int descriptor);
  void bound(int descriptor);

  /// Nothing arrives any more.
  void ended(int descriptor);

  /// Whether it was the library's.
  bool closed(int descriptor);

  [[nodiscard]] bool owns(int descriptor);

  /// Whether a datagram to the library has a socket to arrive in.
  [[nodiscard]] bool listening();

 private:
  std::mutex mutex_;
  std::set<int> open_;
  int bound_ = -1;
};

LibrarySockets& librarySockets();

}  // namespace kit

#endif
