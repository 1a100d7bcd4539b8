// A datagram as it was captured.
#ifndef TEMBRA_CLI_DATAGRAM_H
#define TEMBRA_CLI_DATAGRAM_H

#include <netinet/in.h>

#include <optional>
#include <span>
#include <vector>

namespace tembra::cli {

struct Datagram {
  long long time = 0;  ///< microseconds since 1970
  sockaddr_in from{};
  sockaddr_in to{};
  std::vector<unsigned char> payload;
};

/// The UDP datagram of a packet of IPv4. Nothing when it is something else, or not whole.
[[nodiscard]] std::optional<Datagram> datagramIn(std::span<const unsigned char> packet);

}  // namespace tembra::cli

#endif
