#include "device_types.h"

#include <tembra/platform.h>

#include <array>
#include <charconv>

namespace tembra::cli {

std::string typeName(DevType type) {
  std::array<char, 512> name{};  // the router's library knows of 180 bytes; nothing stops it from writing more
  DevtypeEnumToStr(type, name.data());
  return name.data();
}

std::optional<DevType> parseType(const std::string& text) {
  int number = 0;
  const char* end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, number);
  if (error == std::errc() && stop == end) return static_cast<DevType>(number);
  const DevType type = StrToDevType(text.c_str());
  // 0 is the answer to unknown names, and a type of its own.
  if (type == DEVTYPE_UNKNOWN && typeName(type) != text) return std::nullopt;
  return type;
}

}  // namespace tembra::cli
