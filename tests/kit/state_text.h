// The service's state as one readable line.
#ifndef TEMBRA_TESTS_KIT_STATE_TEXT_H
#define TEMBRA_TESTS_KIT_STATE_TEXT_H

#include <string>

namespace kit {

/// "state 4 idle 0 last 3 cancel 2 radio 2 cmdtype AddDevice". Reads without the library's lock: call it while the
/// library is at rest, or from the callback.
std::string stateText();

}  // namespace kit

#endif
