// Memory behind which nothing may be read or written, and memory that two processes share.
#ifndef TEMBRA_TOOLS_PLATFORM_CHECK_MEMORY_H
#define TEMBRA_TOOLS_PLATFORM_CHECK_MEMORY_H

#include <sys/mman.h>
#include <unistd.h>

#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

namespace tembra::platform_check {

inline char* mapped(std::size_t size, int sharing) {
  void* const memory = mmap(nullptr, size, PROT_READ | PROT_WRITE, sharing | MAP_ANONYMOUS, -1, 0);
  if (memory == MAP_FAILED) {
    std::perror("tembra-platform-check: mmap");
    std::exit(3);
  }
  return static_cast<char*>(memory);
}

/// Bytes that end where the readable memory ends: the first byte behind them ends the process.
class EdgeMemory {
 public:
  explicit EdgeMemory(std::size_t size) : page_(static_cast<std::size_t>(sysconf(_SC_PAGESIZE))), size_(size) {
    start_ = mapped(length() + page_, MAP_PRIVATE);
    mprotect(start_ + length(), page_, PROT_NONE);
  }
  EdgeMemory(const EdgeMemory&) = delete;
  EdgeMemory& operator=(const EdgeMemory&) = delete;
  ~EdgeMemory() { munmap(start_, length() + page_); }

  [[nodiscard]] char* data() const { return start_ + length() - size_; }
  [[nodiscard]] std::size_t size() const { return size_; }
  void forbidWriting() const { mprotect(start_, length(), PROT_READ); }

 private:
  [[nodiscard]] std::size_t length() const { return (size_ / page_ + 1) * page_; }

  std::size_t page_;
  std::size_t size_;
  char* start_;
};

/// A text that nobody may write to, and nobody may read behind.
class EdgeText {
 public:
  enum class End { kNul, kNone };

  explicit EdgeText(const std::string& text, End end = End::kNul) : memory_(text.size() + (end == End::kNul ? 1 : 0)) {
    std::memcpy(memory_.data(), text.c_str(), memory_.size());
    memory_.forbidWriting();
  }
  [[nodiscard]] const char* get() const { return memory_.data(); }
  [[nodiscard]] std::size_t size() const { return memory_.size(); }

 private:
  EdgeMemory memory_;
};

/// Zeroed when it is made.
template <typename Item>
class SharedMemory {
 public:
  SharedMemory() : memory_(mapped(sizeof(Item), MAP_SHARED)) {}
  SharedMemory(const SharedMemory&) = delete;
  SharedMemory& operator=(const SharedMemory&) = delete;
  ~SharedMemory() { munmap(memory_, sizeof(Item)); }

  Item& operator*() const { return *reinterpret_cast<Item*>(memory_); }

 private:
  char* memory_;
};

}  // namespace tembra::platform_check

#endif
