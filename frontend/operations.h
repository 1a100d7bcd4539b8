// The operations. Each runs on the kit's worker and ends by a thrown End.
#ifndef TEMBRA_FRONTEND_OPERATIONS_H
#define TEMBRA_FRONTEND_OPERATIONS_H

#include "session.h"

namespace tembra::frontend {

/// Runs the operation of the command. @return how it ended
[[nodiscard]] End endOf(Session& session, const Command& command);

[[noreturn]] void addDevice(Session& session);
[[noreturn]] void removeDevice(Session& session);
[[noreturn]] void resetRadios(Session& session, int what);

// Hue and Nest.
[[noreturn]] void discoverBridges(Session& session);
[[noreturn]] void addBridge(Session& session, const Command& command);
[[noreturn]] void addBulb(Session& session, const Command& command);
[[noreturn]] void refreshBridge(Session& session, const Command& command);
[[noreturn]] void removeBridge(Session& session, const Command& command);
[[noreturn]] void listBridges(Session& session);
[[noreturn]] void tellAccount(Session& session);
[[noreturn]] void linkAccount(Session& session, const Command& command);
[[noreturn]] void unlinkAccount(Session& session);

}  // namespace tembra::frontend

#endif
