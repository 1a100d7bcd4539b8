// For programs that put a function of their own before the C library's: the C library's.
#ifndef TEMBRA_PLATFORM_NEXT_DEFINITION_H
#define TEMBRA_PLATFORM_NEXT_DEFINITION_H

#include <dlfcn.h>
#include <sys/types.h>

#include <cstdio>
#include <initializer_list>

namespace tembra {

// On 32 bits the C library has a second one, under another name, of each call that takes a time or a file's size. Ours
// are those with 64 bits: the compiler gives their names to definitions and calls, but not to a text.
inline void* nextDefinition(const char* name) {
  if (sizeof(time_t) > sizeof(long)) {
    for (const char* form : {"__%s64_time64", "__%s_time64", "__%s64", "%s64"}) {
      char wide[64];
      std::snprintf(wide, sizeof wide, form, name);
      if (void* const definition = dlsym(RTLD_NEXT, wide)) return definition;
    }
  }
  return dlsym(RTLD_NEXT, name);
}

}  // namespace tembra

#endif
