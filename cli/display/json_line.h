// What programs read: one JSON object a line.
#ifndef TEMBRA_CLI_JSON_LINE_H
#define TEMBRA_CLI_JSON_LINE_H

#include <nlohmann/json_fwd.hpp>
#include <string>

namespace tembra::cli {

/// One line of JSON; bytes that are no UTF-8 are replaced.
[[nodiscard]] std::string jsonLine(const nlohmann::ordered_json& object);

/// {"schema":1,"event":"error", ...}
[[nodiscard]] std::string jsonEvent(const std::string& name, const nlohmann::ordered_json& members);

/// Prints a line on standard output at once. Throws Failure (kFailed) when it cannot be written.
void printLine(const std::string& line);

}  // namespace tembra::cli

#endif
