#ifndef TEMBRA_TESTS_ORACLE_FORMATTED_H
#define TEMBRA_TESTS_ORACLE_FORMATTED_H

#include <string>

namespace oracle {

/// A short line, printf-like.
[[gnu::format(printf, 1, 2)]] std::string formatted(const char* format, ...);

/// A device-type name of the router's library.
std::string typeName(int type);

}  // namespace oracle

#endif
