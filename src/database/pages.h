// Memory of the system's: it costs nothing until it is touched, and the heap nothing. Asking for it costs more than
// looking through a small file: who expects one may lend a buffer.
#ifndef TEMBRA_DATABASE_PAGES_H
#define TEMBRA_DATABASE_PAGES_H

#include <sys/mman.h>

#include <cstddef>
#include <cstring>

namespace tembra {

/// Memory for a while.
struct Buffer {
  void* memory = nullptr;
  std::size_t size = 0;
};

/// Zeroed memory: the buffer if it is large enough, else the system's.
class Pages {
 public:
  explicit Pages(std::size_t size, Buffer buffer = {})
      : size_(size), isLent_(size <= buffer.size), memory_(isLent_ ? std::memset(buffer.memory, 0, size) : map(size)) {}
  ~Pages() {
    if (isThere() && !isLent_) munmap(memory_, size_);
  }
  Pages(const Pages&) = delete;
  Pages& operator=(const Pages&) = delete;

  /// False when the system has no memory to give.
  [[nodiscard]] bool isThere() const { return memory_ != MAP_FAILED; }

  template <typename Item>
  [[nodiscard]] Item* as() const {
    return static_cast<Item*>(memory_);
  }

 private:
  static void* map(std::size_t size) {
    return mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  }

  std::size_t size_;
  bool isLent_;
  void* memory_;
};

}  // namespace tembra

#endif
