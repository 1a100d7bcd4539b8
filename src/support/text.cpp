#include "support/text.h"

#include <cstring>

namespace tembra {

std::size_t textLength(const char* field, std::size_t size) { return strnlen(field, size); }

void copyText(char* to, std::size_t size, const char* from, std::size_t fromSize) {
  const std::size_t room = size - 1;
  const std::size_t length = textLength(from, fromSize < room ? fromSize : room);
  std::memmove(to, from, length);
  to[length] = '\0';
}

}  // namespace tembra
