// The front end that has the connection, as other processes see it.
#ifndef TEMBRA_CLI_OTHER_FRONT_END_H
#define TEMBRA_CLI_OTHER_FRONT_END_H

#include <tembra/watch.h>

#include <memory>

namespace tembra::cli {

struct CloseWatch {
  void operator()(tembra_watch* watch) const { tembra_watch_close(watch); }
};
using Watch = std::unique_ptr<tembra_watch, CloseWatch>;

}  // namespace tembra::cli

#endif
