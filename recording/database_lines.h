// The records of a database as lines of text, which a recording keeps as comments.
#ifndef TEMBRA_RECORDING_DATABASE_LINES_H
#define TEMBRA_RECORDING_DATABASE_LINES_H

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace tembra::recording {

using DatabaseRecord = std::pair<std::string, std::vector<unsigned char>>;

/// "database KEY SIZE DIGITS": the value in hexadecimal digits, without the zeros at its end. Empty: the record is
/// longer than any that the router's programs write.
std::string lineOf(const DatabaseRecord& record);

/// None: the line is about something else.
std::optional<DatabaseRecord> recordIn(std::string_view line);

}  // namespace tembra::recording

#endif
