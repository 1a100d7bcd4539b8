// Allocations of this thread: counted, or made to fail. For programs that link tembra-test-memory, too.
#ifndef TEMBRA_TESTS_KIT_MEMORY_H
#define TEMBRA_TESTS_KIT_MEMORY_H

#include <cstddef>

namespace kit {

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

/// Allocations that the library makes on any thread: itself, by Depot, by the router's libraries, or inside a call of
/// the C library that the test kit interposes.
namespace library_allocations {

/// Counts from zero; the one of this number fails, 0: none.
void count(std::size_t failing = 0);

/// Ends the counting. @return how many there were.
std::size_t stop();

/// Where the one that failed was asked for; null when none was.
const void* struckAt();

}  // namespace library_allocations

}  // namespace kit

#endif
