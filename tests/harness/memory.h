// Allocations of this thread: counted, or made to fail. For programs that link tembra-test-memory, too.
#ifndef TEMBRA_TESTS_HARNESS_MEMORY_H
#define TEMBRA_TESTS_HARNESS_MEMORY_H

#include <cstddef>

namespace harness {

/// How often this thread called malloc since it was made.
class AllocationCount {
 public:
  AllocationCount();
  [[nodiscard]] std::size_t value() const;

 private:
  std::size_t before_;
};

/// While it lives, malloc of exactly this size fails on this thread.
class FailingAllocation {
 public:
  explicit FailingAllocation(std::size_t size);
  ~FailingAllocation();
  FailingAllocation(const FailingAllocation&) = delete;
  FailingAllocation& operator=(const FailingAllocation&) = delete;

  /// How often it did.
  [[nodiscard]] std::size_t strikes() const;
};

}  // namespace harness

#endif
