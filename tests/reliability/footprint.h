// What the process holds: descriptors, threads, memory.
#ifndef TEMBRA_TESTS_RELIABILITY_FOOTPRINT_H
#define TEMBRA_TESTS_RELIABILITY_FOOTPRINT_H

#include <cstddef>
#include <string>

struct Footprint {
  std::size_t descriptors;
  std::size_t threads;
  std::size_t heap;      // bytes that are allocated
  std::size_t resident;  // bytes of memory that the kernel gave

  static Footprint now();

  [[nodiscard]] std::string text() const;
};

/// A sanitizer keeps what was freed, so that only what is allocated tells anything.
bool isSanitized();

/// Fails the test when the process holds more than it did.
void expectFlat(const Footprint& early, const Footprint& late);

#endif
