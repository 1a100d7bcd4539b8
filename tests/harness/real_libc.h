// The C library's own function behind an interposed one.
#ifndef TEMBRA_TESTS_HARNESS_REAL_LIBC_H
#define TEMBRA_TESTS_HARNESS_REAL_LIBC_H

#include <dlfcn.h>

// Declares `real`, the next definition of `function` after the test program's. Looked up at first use, because some
// functions are called before the program's static objects exist.
#define HARNESS_REAL(function) \
  static auto* const real = reinterpret_cast<decltype(&::function)>(dlsym(RTLD_NEXT, #function))

#endif
