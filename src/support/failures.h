// The last failure of each kind, for front ends that ask for it.
#ifndef TEMBRA_SUPPORT_FAILURES_H
#define TEMBRA_SUPPORT_FAILURES_H

#include <tembra/service.h>
#include <tembra/vocabulary.h>

namespace tembra {

// Call both with the state lock held.
void recordSendFailure(ServerType server, int error);
void recordOpeningFailure(tembra_opening_cause cause, int error);

}  // namespace tembra

#endif
