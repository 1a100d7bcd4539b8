// From a recorded packet to the UDP datagram in it.
#ifndef TEMBRA_RECORDING_PACKET_H
#define TEMBRA_RECORDING_PACKET_H

#include <netinet/in.h>

#include <cstddef>
#include <optional>
#include <span>

namespace tembra::recording {

using PacketBytes = std::span<const unsigned char>;

struct UdpDatagram {
  sockaddr_in from;
  sockaddr_in to;
  PacketBytes payload;  ///< as much of it as was recorded
  bool isWhole;
};

/// None: the packet is no datagram of IPv4, a fragment of one, or its headers were not recorded whole.
std::optional<UdpDatagram> udpDatagramIn(int linkType, PacketBytes packet);

}  // namespace tembra::recording

#endif
