// Whether the servers are there. A datagram to nobody is lost without a word, so the program looks before it asks.
#ifndef TEMBRA_CLI_SERVERS_H
#define TEMBRA_CLI_SERVERS_H

#include <tembra/vocabulary.h>

#include <vector>

namespace tembra::cli {

// Call these when the service object exists, which resolves the addresses.

/// Throws Failure (kNoConnection) unless at least one of the servers listens.
void requireOneOf(const std::vector<ServerType>& servers);

/// A sentence on standard error for each of the servers that does not listen.
void complainOfMissing(const std::vector<ServerType>& servers);

}  // namespace tembra::cli

#endif
