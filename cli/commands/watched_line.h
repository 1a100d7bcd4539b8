// What another front end tells its watchers, in sentences for people.
#ifndef TEMBRA_CLI_WATCHED_LINE_H
#define TEMBRA_CLI_WATCHED_LINE_H

#include <nlohmann/json_fwd.hpp>
#include <string>

namespace tembra::cli {

/// A member's text; empty when there is none, or something else. What another process writes may be anything.
[[nodiscard]] std::string textOf(const nlohmann::json& object, const char* member);

/// The number whose name in the kit is this one; the number behind the last where there is none.
template <typename Number>
[[nodiscard]] Number numberOf(const char* (*nameOf)(int), const std::string& name) {
  int number = 0;
  while (nameOf(number) != nullptr && nameOf(number) != name) ++number;
  return static_cast<Number>(number);
}

/// "add: A device answers on Z-Wave." for a line of the watch socket.
[[nodiscard]] std::string watchedText(const std::string& line);

}  // namespace tembra::cli

#endif
