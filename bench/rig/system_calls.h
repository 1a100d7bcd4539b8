// The system calls of the receive thread, seen from outside by tracing a process of its own.
#ifndef TEMBRA_BENCH_RIG_SYSTEM_CALLS_H
#define TEMBRA_BENCH_RIG_SYSTEM_CALLS_H

#include <string>
#include <vector>

#include "rig/datagrams.h"

namespace bench {

/// What each of `passes` passes asks of the system that handles such a datagram, from one receive to the next:
/// "setsockopt recvfrom", with a "sendto" before it when something is sent. Call while the process has one thread.
std::vector<std::string> systemCallsOfPasses(const Datagram& datagram, int passes);

/// What a pass may ask: the same, by what the flow has to send.
std::string necessarySystemCalls(const Datagram& datagram);

}  // namespace bench

#endif
