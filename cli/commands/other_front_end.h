// The front end that has the connection, as other processes see it.
#ifndef TEMBRA_CLI_OTHER_FRONT_END_H
#define TEMBRA_CLI_OTHER_FRONT_END_H

#include <tembra/watch.h>

#include <memory>
#include <string>

namespace tembra::cli {

struct CloseWatch {
  void operator()(tembra_watch* watch) const { tembra_watch_close(watch); }
};
using Watch = std::unique_ptr<tembra_watch, CloseWatch>;

/// Whether an error of reading or watching says that nobody has the connection.
[[nodiscard]] bool isNobodyThere(int error);

/// For programs: the event `status`. Null: nobody that can be watched has the connection.
[[nodiscard]] std::string statusEvent(const tembra_holder* holder);

}  // namespace tembra::cli

#endif
