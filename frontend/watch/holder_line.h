// The first line that a watcher hears: who has the connection, and what that process does.
//
//     {"schema":1,"holder":{"role":2,"program":"kiosk","pid":812,"since":1790000000},"state":{...}}
#ifndef TEMBRA_FRONTEND_WATCH_HOLDER_LINE_H
#define TEMBRA_FRONTEND_WATCH_HOLDER_LINE_H

#include <string>
#include <string_view>

namespace tembra::frontend {

/// The process that has the connection.
struct Holder {
  int role = 0;         ///< tembra_role
  std::string program;  ///< how it is called
  long long pid = 0;    ///< as the holder's process sees itself
  long long since = 0;  ///< seconds since 1970: when it opened the connection
};

/// The line, without its newline. @param state the kit's state as a JSON object
[[nodiscard]] std::string holderLine(const Holder& holder, std::string_view state);

/// A line that only says what is wrong.
[[nodiscard]] std::string errorLine(std::string_view what);

/// The line behind the entries that the flight recorder has. @param last number of the last one
[[nodiscard]] std::string historyLine(unsigned long long last);

/// What a reader of the first line learns.
struct HolderReport {
  Holder holder;
  std::string operation;
  std::string phase;
  std::string error;  ///< of an error line
};

/// @return false: the line is no JSON object
[[nodiscard]] bool readHolderLine(std::string_view line, HolderReport& report);

}  // namespace tembra::frontend

#endif
