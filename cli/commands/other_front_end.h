// The front end that has the connection, as other processes see it.
#ifndef TEMBRA_CLI_OTHER_FRONT_END_H
#define TEMBRA_CLI_OTHER_FRONT_END_H

#include <tembra/watch.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace tembra::cli {

struct CloseWatch {
  void operator()(tembra_watch* watch) const { tembra_watch_close(watch); }
};
using Watch = std::unique_ptr<tembra_watch, CloseWatch>;

/// Whether an error of reading or watching says that nobody has the connection.
[[nodiscard]] bool isNobodyThere(int error);

/// The flight recorder of the front end that has the connection: the lines of tembra_frontend_history, the oldest
/// first. Nothing: none that can be watched has it. Throws Failure when it does not answer.
[[nodiscard]] std::optional<std::vector<std::string>> readHistory(const std::string& watchPath);

/// The flight recorder as it was when an operation failed last, whoever's it was. Nothing: none was kept. Throws
/// Failure when it cannot be read.
[[nodiscard]] std::optional<std::vector<std::string>> readFailure(const std::string& watchPath);

/// For programs: the event `status`. Null: nobody that can be watched has the connection.
[[nodiscard]] std::string statusEvent(const tembra_holder* holder);

}  // namespace tembra::cli

#endif
