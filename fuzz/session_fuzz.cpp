// Whole sessions: calls of a front end, datagrams from every sender, time-outs, database changes and faults, through
// the library's own receive loop.
#include "session/player.h"
#include "support/script.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Script script(data, size);
  fuzz::Player(script).play();
  return 0;
}
