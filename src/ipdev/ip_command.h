// What commands to the Hue and the Nest server have in common.
#ifndef TEMBRA_IPDEV_IP_COMMAND_H
#define TEMBRA_IPDEV_IP_COMMAND_H

#include <tembra/association.h>
#include <tembra/globals.h>

#include "support/shared_state.h"

namespace tembra {

/// Sends a command and marks an operation as in progress; call with the state lock held. A null `commandType` leaves
/// that text as it is. @return the address of `idle`.
template <typename Command>
unsigned char* startIpOperation(TembraAssociation& assoc, ServerType server, Command& command,
                                const char* commandType) {
  assoc.activeRadio = server;
  assoc.sendToServers(server, &command);
  if (commandType != nullptr) setCommandType(commandType);
  setIdle(false);
  return &idle;
}

}  // namespace tembra

#endif
