// The C library's own function behind an interposed one.
#ifndef TEMBRA_TESTS_KIT_REAL_LIBC_H
#define TEMBRA_TESTS_KIT_REAL_LIBC_H

#include <dlfcn.h>

#include "platform/next_definition.h"

// Declares `real`, the next definition of `function` after the test program's. Looked up at first use, because some
// functions are called before the program's static objects exist.
#define KIT_REAL(function)  \
  static auto* const real = \
      reinterpret_cast<decltype(&::function)>(kit::nextDefinition("__interceptor_" #function, #function))

namespace kit {

// A sanitizer whose runtime is part of the program has its own definition under another name.
inline void* nextDefinition(const char* sanitizers, const char* name) {
  void* const interceptor = dlsym(RTLD_DEFAULT, sanitizers);
  return interceptor != nullptr ? interceptor : tembra::nextDefinition(name);
}

}  // namespace kit

#endif
