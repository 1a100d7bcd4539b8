#include "formatted.h"

#include <tembra/platform.h>

#include <cstdarg>
#include <cstdio>

namespace oracle {

std::string formatted(const char* format, ...) {
  char line[200] = {};
  va_list numbers;
  va_start(numbers, format);
  vsnprintf(line, sizeof line, format, numbers);
  va_end(numbers);
  return line;
}

std::string typeName(int type) {
  char name[512] = {};
  DevtypeEnumToStr(static_cast<DevType>(type), name);
  return name;
}

}  // namespace oracle
