// malloc, between the program with its libraries and the C library's, or the sanitizer's where there is one.
#include <cerrno>
#include <cstdlib>

#include "harness/memory.h"

extern "C" void* mallocOfC(std::size_t size) __asm__("__libc_malloc");
extern "C" void* mallocOfSanitizer(std::size_t size) __asm__("__interceptor_malloc") __attribute__((weak));

namespace {

thread_local std::size_t calls = 0;
thread_local std::size_t failingSize = 0;
thread_local std::size_t failures = 0;

}  // namespace

extern "C" void* malloc(std::size_t size) noexcept {
  ++calls;
  if (failingSize != 0 && size == failingSize) {
    ++failures;
    errno = ENOMEM;
    return nullptr;
  }
  return mallocOfSanitizer != nullptr ? mallocOfSanitizer(size) : mallocOfC(size);
}

namespace harness {

AllocationCount::AllocationCount() : before_(calls) {}
std::size_t AllocationCount::value() const { return calls - before_; }

FailingAllocation::FailingAllocation(std::size_t size) {
  failures = 0;
  failingSize = size;
}
FailingAllocation::~FailingAllocation() { failingSize = 0; }
std::size_t FailingAllocation::strikes() const { return failures; }

}  // namespace harness
