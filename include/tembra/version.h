// The version of these headers, and of the library that a program runs with.
//
// Plain C and C++. A program works with every library of the same major number that is not older than its headers.
#ifndef TEMBRA_VERSION_H
#define TEMBRA_VERSION_H

#include <tembra/export.h>

#define TEMBRA_VERSION_MAJOR 1
#define TEMBRA_VERSION_MINOR 0
#define TEMBRA_VERSION_PATCH 0

/// All three in one number, which grows with every version: 10203 is 1.2.3.
#define TEMBRA_VERSION (TEMBRA_VERSION_MAJOR * 10000 + TEMBRA_VERSION_MINOR * 100 + TEMBRA_VERSION_PATCH)

/// The same as a text: "1.2.3".
#define TEMBRA_VERSION_TEXT                  \
  TEMBRA_VERSION_WORD_(TEMBRA_VERSION_MAJOR) \
  "." TEMBRA_VERSION_WORD_(TEMBRA_VERSION_MINOR) "." TEMBRA_VERSION_WORD_(TEMBRA_VERSION_PATCH)
#define TEMBRA_VERSION_WORD_(number) TEMBRA_VERSION_DIGITS_(number)
#define TEMBRA_VERSION_DIGITS_(number) #number

#ifdef __cplusplus
extern "C" {
#endif

/// TEMBRA_VERSION of the library that the program runs with. Any thread may call it at any time.
TEMBRA_API int tembra_version(void);

#ifdef __cplusplus
}
#endif

#endif
