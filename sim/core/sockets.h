// Sockets at the addresses of the router's parts.
#ifndef TEMBRA_SIM_CORE_SOCKETS_H
#define TEMBRA_SIM_CORE_SOCKETS_H

#include <netinet/in.h>

#include "platform/descriptor.h"
#include "sim/core/endpoints.h"

namespace tembra::sim {

[[nodiscard]] sockaddr_in addressOf(const Endpoint& endpoint);

/// A socket for datagrams that never blocks. Throws one sentence when the address cannot be had.
[[nodiscard]] Descriptor boundSocket(const Endpoint& endpoint);
[[nodiscard]] Descriptor boundSocket(const sockaddr_in& address, std::string_view name);

/// Whether a socket of any process has the address. The attempt to bind it would keep others from it.
[[nodiscard]] bool isTaken(const Endpoint& endpoint);

}  // namespace tembra::sim

#endif
