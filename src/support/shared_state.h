// The shared state whose writing has a rule of its own: each such rule is kept here, in one place. The other globals of
// <tembra/globals.h> are read and written directly. All of it is done with the state lock held, but for `username1`,
// which the database's turn guards.
#ifndef TEMBRA_SUPPORT_SHARED_STATE_H
#define TEMBRA_SUPPORT_SHARED_STATE_H

#include <tembra/association.h>

namespace tembra {

/// Front ends poll the byte `idle` without the lock, so it is written with release order.
void setIdle(bool value);
[[nodiscard]] bool isIdle();

/// Whether the association state is what an operation has left that was cancelled, timed out or closed upon. Only the
/// next add or removal sets another one.
void setStateLeft(bool value);
[[nodiscard]] bool isStateLeft();

/// Replaces the "CommandType" text; bytes behind its NUL keep their value.
void setCommandType(const char* text);
void clearCommandType();

/// The only writer of the association state.
void setState(TembraAssociation& assoc, AssocState state);
void setSocket(TembraAssociation& assoc, int descriptor);

void setAssociationMeshId(int id);

}  // namespace tembra

#endif
