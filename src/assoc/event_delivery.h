// The one way an event reaches the front end.
#ifndef TEMBRA_ASSOC_EVENT_DELIVERY_H
#define TEMBRA_ASSOC_EVENT_DELIVERY_H

#include <tembra/association.h>

namespace tembra {

/// Delivers `event` with this code and source. Remembers a progress code; any other code clears the remembered one, but
/// for a time-out its caller does that. Then calls the callback if there is one. Call it with the state lock held; the
/// callback runs without it.
void deliver(TembraAssociation& assoc, AssocEvent& event, AssocEventCode code, ServerType source);

/// The same for an event that leaves the source word as it is.
void deliver(TembraAssociation& assoc, AssocEvent& event, AssocEventCode code);

}  // namespace tembra

#endif
