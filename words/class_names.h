// Names of Z-Wave command classes and ZigBee clusters, as the standards and other tools of the field write them.
#ifndef TEMBRA_WORDS_CLASS_NAMES_H
#define TEMBRA_WORDS_CLASS_NAMES_H

#include <optional>
#include <string_view>

namespace tembra::words {

/// 0x25 for "Binary Switch", "SWITCH BINARY" and "COMMAND_CLASS_SWITCH_BINARY": capitals, the order of the words and
/// what stands between them do not count. Nothing for a name that is not known.
[[nodiscard]] std::optional<int> commandClassNumber(std::string_view name);

/// 0x0402 for "Temperature Measurement" and "msTemperatureMeasurement": only letters and digits count, and no capitals.
/// Nothing for a name that is not known.
[[nodiscard]] std::optional<int> clusterNumber(std::string_view name);

/// "Temperature Measurement" for 0x0402; null when there is none.
[[nodiscard]] const char* clusterName(int number);

}  // namespace tembra::words

#endif
