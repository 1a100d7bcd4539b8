#include "assoc/event_delivery.h"

#include "support/state_lock.h"

namespace tembra {
namespace {

bool isProgress(AssocEventCode code) {
  switch (code) {
    case EVENT_ADDING:
    case EVENT_GETTING_INFO:
    case EVENT_SELECT_TYPE:
    case EVENT_CREATED:
    case EVENT_HUE_BRIDGES:
      return true;
    default:
      return false;
  }
}

void remember(TembraAssociation& assoc, AssocEventCode code) {
  if (code == EVENT_TIMEOUT) return;  // it reports the remembered code, which is forgotten after the callback
  assoc.lastEventCode = isProgress(code) ? code : 0;
}

}  // namespace

void deliver(TembraAssociation& assoc, AssocEvent& event, AssocEventCode code) {
  event.code = code;
  remember(assoc, code);
  const auto callback = assoc.eventCallback;
  if (callback == nullptr) return;
  const StateUnlocked unlocked;
  callback(&event);
}

void deliver(TembraAssociation& assoc, AssocEvent& event, AssocEventCode code, ServerType source) {
  event.source = source;
  deliver(assoc, event, code);
}

}  // namespace tembra
