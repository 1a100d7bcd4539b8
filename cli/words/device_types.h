// Device types by name or by number.
#ifndef TEMBRA_CLI_DEVICE_TYPES_H
#define TEMBRA_CLI_DEVICE_TYPES_H

#include <optional>
#include <string>

namespace tembra::cli {

/// "BinarySwitch" for 1.
[[nodiscard]] std::string typeName(int type);

/// The number of a type that is given by its name or number. Nothing when there is none.
[[nodiscard]] std::optional<int> parseType(const std::string& text);

/// Whether a device can have this type.
[[nodiscard]] bool isType(int number);

}  // namespace tembra::cli

#endif
