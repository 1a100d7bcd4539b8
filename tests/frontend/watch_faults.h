// What the kernel tells or refuses the server of watchers, when a test says so.
#ifndef TEMBRA_TESTS_FRONTEND_WATCH_FAULTS_H
#define TEMBRA_TESTS_FRONTEND_WATCH_FAULTS_H

#include <optional>
#include <string>

#include "watch_kit.h"

namespace tembra::test {

struct WatchFaults {
  std::optional<User> peer;   ///< who is at the other end of every socket
  std::optional<uid_t> self;  ///< whose process this is
  mode_t rightsAtFirst = 0;   ///< of a socket's file, when it gets its group
  std::string failing;        ///< "socket", "eventfd" or "pthread_create": fails with EMFILE
};

WatchFaults& watchFaults();

}  // namespace tembra::test

#endif
