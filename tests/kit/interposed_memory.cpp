// malloc, calloc and realloc, between the program with its libraries and the C library's, or the sanitizer's where
// there is one.
#include <link.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <iterator>

#include "kit/faults.h"
#include "kit/memory.h"

extern "C" {
void* mallocOfC(std::size_t size) __asm__("__libc_malloc");
void* callocOfC(std::size_t count, std::size_t size) __asm__("__libc_calloc");
void* reallocOfC(void* block, std::size_t size) __asm__("__libc_realloc");
void* mallocOfSanitizer(std::size_t size) __asm__("__interceptor_malloc") __attribute__((weak));
void* callocOfSanitizer(std::size_t count, std::size_t size) __asm__("__interceptor_calloc") __attribute__((weak));
void* reallocOfSanitizer(void* block, std::size_t size) __asm__("__interceptor_realloc") __attribute__((weak));
}

namespace {

thread_local std::size_t calls = 0;
thread_local std::size_t failingSize = 0;
thread_local std::size_t failures = 0;

struct Code {
  std::uintptr_t begin;
  std::uintptr_t end;
};

// The code that allocates for the library, found when counting begins.
constexpr const char* kObjects[] = {"libTembraAssoc.so", "libTembraPlatform.so", "libqdbm.so"};
Code code[16];
std::size_t codes = 0;

std::atomic<bool> counting{false};
std::atomic<std::size_t> counted{0};
std::atomic<std::size_t> failingNumber{0};
std::atomic<const void*> struck{nullptr};

bool isOurs(const char* object) {
  return std::any_of(std::begin(kObjects), std::end(kObjects),
                     [object](const char* name) { return std::strstr(object, name) != nullptr; });
}

int takeCode(dl_phdr_info* info, std::size_t /*size*/, void* /*unused*/) {
  if (!isOurs(info->dlpi_name)) return 0;
  for (int i = 0; i < info->dlpi_phnum && codes < sizeof code / sizeof code[0]; ++i) {
    const ElfW(Phdr)& header = info->dlpi_phdr[i];
    if (header.p_type != PT_LOAD || (header.p_flags & PF_X) == 0) continue;
    const std::uintptr_t begin = info->dlpi_addr + header.p_vaddr;
    code[codes++] = {begin, begin + header.p_memsz};
  }
  return 0;
}

bool isForTheLibrary(const void* caller) {
  const auto address = reinterpret_cast<std::uintptr_t>(caller);
  for (std::size_t i = 0; i < codes; ++i) {
    if (address >= code[i].begin && address < code[i].end) return true;
  }
  return kit::LibraryCall::isOn();
}

bool fails(const void* caller) {
  if (!counting.load(std::memory_order_acquire) || !isForTheLibrary(caller)) return false;
  if (++counted != failingNumber) return false;
  struck = caller;
  errno = ENOMEM;
  return true;
}

}  // namespace

extern "C" void* malloc(std::size_t size) noexcept {
  ++calls;
  if (failingSize != 0 && size == failingSize) {
    ++failures;
    errno = ENOMEM;
    return nullptr;
  }
  if (fails(__builtin_return_address(0))) return nullptr;
  return mallocOfSanitizer != nullptr ? mallocOfSanitizer(size) : mallocOfC(size);
}

extern "C" void* calloc(std::size_t count, std::size_t size) noexcept {
  if (fails(__builtin_return_address(0))) return nullptr;
  return callocOfSanitizer != nullptr ? callocOfSanitizer(count, size) : callocOfC(count, size);
}

extern "C" void* realloc(void* block, std::size_t size) noexcept {
  if (fails(__builtin_return_address(0))) return nullptr;
  return reallocOfSanitizer != nullptr ? reallocOfSanitizer(block, size) : reallocOfC(block, size);
}

namespace kit {

AllocationCount::AllocationCount() : before_(calls) {}
std::size_t AllocationCount::value() const { return calls - before_; }

FailingAllocation::FailingAllocation(std::size_t size) {
  failures = 0;
  failingSize = size;
}
FailingAllocation::~FailingAllocation() { failingSize = 0; }
std::size_t FailingAllocation::strikes() const { return failures; }

namespace library_allocations {

void count(std::size_t failing) {
  if (codes == 0) dl_iterate_phdr(&takeCode, nullptr);
  counted = 0;
  struck = nullptr;
  failingNumber = failing;
  counting.store(true, std::memory_order_release);
}

std::size_t stop() {
  counting.store(false, std::memory_order_release);
  return counted;
}

const void* struckAt() { return struck; }

}  // namespace library_allocations

}  // namespace kit
