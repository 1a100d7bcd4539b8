#include "cli/words/device_types.h"

#include <tembra/frontend.h>

#include "cli/words/numbers.h"

namespace tembra::cli {

std::string typeName(int type) {
  const char* name = tembra_type_name(type);
  return name == nullptr ? std::to_string(type) : name;
}

std::optional<int> parseType(const std::string& text) {
  const std::optional<int> number = parseNumber(text);
  const int type = number ? *number : tembra_type_number(text.c_str());
  // The number of a text that names no type is that of no type.
  return isType(type) && (number || typeName(type) == text) ? std::optional(type) : std::nullopt;
}

// The router's library names a number without a type after the number.
bool isType(int number) {
  const char* name = number > 0 ? tembra_type_name(number) : nullptr;
  return name != nullptr && name != "DevType" + std::to_string(number);
}

}  // namespace tembra::cli
