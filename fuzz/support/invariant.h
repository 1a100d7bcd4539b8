// What must hold whatever comes in.
#ifndef TEMBRA_FUZZ_SUPPORT_INVARIANT_H
#define TEMBRA_FUZZ_SUPPORT_INVARIANT_H

#include <cstddef>
#include <cstring>

namespace fuzz {

/// Ends the program with a message when an invariant does not hold: for a fuzzer that is a finding.
void require(bool holds, const char* invariant);

template <std::size_t Size>
bool isTerminated(const char (&field)[Size]) {
  return std::memchr(field, '\0', Size) != nullptr;
}

/// Whether nothing but zeros stands in [begin, end) of a record.
bool isZero(const void* record, std::size_t begin, std::size_t end);

}  // namespace fuzz

#endif
