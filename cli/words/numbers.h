// Numbers as people write them.
#ifndef TEMBRA_CLI_NUMBERS_H
#define TEMBRA_CLI_NUMBERS_H

#include <optional>
#include <string>

namespace tembra::cli {

/// A decimal number, or a hexadecimal one behind "0x"; nothing when it is neither, or too large.
[[nodiscard]] std::optional<int> parseNumber(const std::string& text);

}  // namespace tembra::cli

#endif
