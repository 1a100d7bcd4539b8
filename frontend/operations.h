// The operations. Each runs on the kit's worker and ends by a thrown End.
#ifndef TEMBRA_FRONTEND_OPERATIONS_H
#define TEMBRA_FRONTEND_OPERATIONS_H

#include "session.h"

namespace tembra::frontend {

/// Runs the operation of the command. @return how it ended
[[nodiscard]] End endOf(Session& session, const Command& command);

enum class Known { kRefused, kAddedAgain };
[[noreturn]] void addDevice(Session& session, Known known);

enum class Leaving { kListed, kStranger };
[[noreturn]] void removeDevice(Session& session, Leaving wanted);

/// Lets the device leave whose button is pressed, with the connection opened anew. Ends the operation when the radio
/// fails or nobody presses. @param wanted which one it should be @return the device; nothing when the device list does
/// not have it
[[nodiscard]] std::optional<tembra_device_event> letLeave(Session& session, tembra_phase phase,
                                                          const KnownDevice& wanted = {});

/// The end of an operation during which another device left.
[[nodiscard]] End otherLeft(const tembra_device_event& device);

[[noreturn]] void resetRadios(Session& session, int what);

[[noreturn]] void listDevices(Session& session);

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
