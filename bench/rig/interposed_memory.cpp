// malloc, calloc and realloc, between the program with its libraries and the C library's.
#include <cstdlib>

#include "rig/outside.h"

extern "C" {
void* mallocOfC(std::size_t size) __asm__("__libc_malloc");
void* callocOfC(std::size_t count, std::size_t size) __asm__("__libc_calloc");
void* reallocOfC(void* block, std::size_t size) __asm__("__libc_realloc");
}

extern "C" void* malloc(std::size_t size) noexcept {
  bench::own_code::allocated();
  return mallocOfC(size);
}

extern "C" void* calloc(std::size_t count, std::size_t size) noexcept {
  bench::own_code::allocated();
  return callocOfC(count, size);
}

extern "C" void* realloc(void* block, std::size_t size) noexcept {
  bench::own_code::allocated();
  return reallocOfC(block, size);
}
