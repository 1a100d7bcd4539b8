#ifndef TEMBRA_FUZZ_SUPPORT_EVENT_CHECK_H
#define TEMBRA_FUZZ_SUPPORT_EVENT_CHECK_H

#include <tembra/events.h>

namespace fuzz {

/// What holds for every event, whatever led to it: a known code and source, and a payload whose texts end.
void checkEvent(const AssocEvent& event);

/// Whether a code is one that is remembered as progress.
bool isProgressCode(int code);

}  // namespace fuzz

#endif
