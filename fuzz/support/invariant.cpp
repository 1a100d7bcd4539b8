#include "support/invariant.h"

#include <unistd.h>

#include <algorithm>
#include <cstdlib>

namespace fuzz {

// Straight to the descriptor: the streams are closed to the library's chatter.
void require(bool holds, const char* invariant) {
  if (holds) return;
  static constexpr char kPrefix[] = "INVARIANT BROKEN: ";
  static_cast<void>(!write(STDERR_FILENO, kPrefix, sizeof kPrefix - 1));
  static_cast<void>(!write(STDERR_FILENO, invariant, std::strlen(invariant)));
  static_cast<void>(!write(STDERR_FILENO, "\n", 1));
  std::abort();
}

bool isZero(const void* record, std::size_t begin, std::size_t end) {
  const auto* bytes = static_cast<const unsigned char*>(record);
  return std::all_of(bytes + begin, bytes + end, [](unsigned char byte) { return byte == 0; });
}

}  // namespace fuzz
