// How often something stands in a trace.
#ifndef TEMBRA_TESTS_RECEIVER_OCCURRENCES_H
#define TEMBRA_TESTS_RECEIVER_OCCURRENCES_H

#include <string>

inline std::size_t occurrences(const std::string& text, const std::string& part) {
  std::size_t found = 0;
  for (auto at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) ++found;
  return found;
}

#endif
