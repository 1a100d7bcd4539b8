// One accessor for each shared global that more than one piece of the library touches. All of them are called with
// the state lock held, except where a function says otherwise.
#ifndef TEMBRA_SUPPORT_SHARED_STATE_H
#define TEMBRA_SUPPORT_SHARED_STATE_H

#include <tembra/association.h>

namespace tembra {

/// `idle` is one byte that front ends poll without the lock: written with release order.
void setIdle(bool value);
[[nodiscard]] bool isIdle();

/// Replaces the "CommandType" text; bytes behind its NUL keep their value.
void setCommandType(const char* text);
void clearCommandType();

/// The only writer of the association state.
void setState(TembraAssociation& assoc, AssocState state);

void setAssociationMeshId(int id);

}  // namespace tembra

#endif
