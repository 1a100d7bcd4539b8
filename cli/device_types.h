// Device types by name or by number.
#ifndef TEMBRA_CLI_DEVICE_TYPES_H
#define TEMBRA_CLI_DEVICE_TYPES_H

#include <tembra/vocabulary.h>

#include <optional>
#include <string>

namespace tembra::cli {

[[nodiscard]] std::string typeName(DevType type);

/// Nothing when it is neither a number nor the name of a device type.
[[nodiscard]] std::optional<DevType> parseType(const std::string& text);

}  // namespace tembra::cli

#endif
