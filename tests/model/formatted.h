#ifndef TEMBRA_TESTS_MODEL_FORMATTED_H
#define TEMBRA_TESTS_MODEL_FORMATTED_H

#include <string>

namespace model {

/// A short line, printf-like.
[[gnu::format(printf, 1, 2)]] std::string formatted(const char* format, ...);

}  // namespace model

#endif
