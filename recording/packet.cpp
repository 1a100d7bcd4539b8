#include "recording/packet.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace tembra::recording {
namespace {

// Link types by the numbers of their public list.
constexpr int kNull = 0;  // a 32-bit address family in the byte order of the recording machine
constexpr int kEthernet = 1;
constexpr int kRawBsd[] = {12, 14};
constexpr int kRaw = 101;
constexpr int kLoop = 108;  // like kNull, in network byte order
constexpr int kCooked = 113;
constexpr int kIpv4 = 228;
constexpr int kCooked2 = 276;

constexpr std::uint16_t kProtocolIpv4 = 0x0800;
constexpr std::uint16_t kProtocolVlan = 0x8100;
constexpr unsigned char kProtocolUdp = 17;
constexpr unsigned char kFamilyInet = 2;  // on every system

std::uint16_t bigEndian16(PacketBytes bytes, std::size_t offset) {
  return static_cast<std::uint16_t>(bytes[offset] << 8 | bytes[offset + 1]);
}

std::optional<PacketBytes> behind(PacketBytes packet, std::size_t header) {
  if (packet.size() < header) return std::nullopt;
  return packet.subspan(header);
}

std::optional<PacketBytes> behindProtocol(PacketBytes packet, std::size_t protocolOffset, std::size_t header) {
  if (packet.size() < header || bigEndian16(packet, protocolOffset) != kProtocolIpv4) return std::nullopt;
  return packet.subspan(header);
}

std::optional<PacketBytes> behindFamily(PacketBytes packet) {
  constexpr std::size_t header = 4;
  if (packet.size() < header || (packet[0] | packet[3]) != kFamilyInet) return std::nullopt;
  return packet.subspan(header);
}

std::optional<PacketBytes> behindEthernet(PacketBytes packet) {
  constexpr std::size_t addresses = 12;
  constexpr std::size_t tag = 4;
  constexpr std::size_t header = addresses + 2;
  const bool isTagged = packet.size() >= header && bigEndian16(packet, addresses) == kProtocolVlan;
  return behindProtocol(packet, addresses + (isTagged ? tag : 0), header + (isTagged ? tag : 0));
}

std::optional<PacketBytes> ipv4In(int linkType, PacketBytes packet) {
  switch (linkType) {
    case kNull:
    case kLoop:
      return behindFamily(packet);
    case kEthernet:
      return behindEthernet(packet);
    case kRawBsd[0]:
    case kRawBsd[1]:
    case kRaw:
    case kIpv4:
      return packet;
    case kCooked:
      return behindProtocol(packet, 14, 16);
    case kCooked2:
      return behindProtocol(packet, 0, 20);
    default:
      return std::nullopt;
  }
}

// Both already stand in network byte order.
sockaddr_in addressIn(PacketBytes ip, std::size_t addressOffset, PacketBytes udp, std::size_t portOffset) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  std::memcpy(&address.sin_addr, ip.data() + addressOffset, sizeof address.sin_addr);
  std::memcpy(&address.sin_port, udp.data() + portOffset, sizeof address.sin_port);
  return address;
}

bool isWholeUdpPacket(PacketBytes ip) {
  constexpr int fragmentBits = 0x3FFF;  // of its offset, and whether more follow
  return ip[0] >> 4 == 4 && (bigEndian16(ip, 6) & fragmentBits) == 0 && ip[9] == kProtocolUdp;
}

}  // namespace

std::optional<UdpDatagram> udpDatagramIn(int linkType, PacketBytes packet) {
  constexpr std::size_t shortestIp = 20;
  constexpr std::size_t udpHeader = 8;
  const std::optional<PacketBytes> ip = ipv4In(linkType, packet);
  if (!ip || ip->size() < shortestIp || !isWholeUdpPacket(*ip)) return std::nullopt;
  const std::size_t ipHeader = 4 * static_cast<std::size_t>((*ip)[0] & 0xF);
  const std::optional<PacketBytes> udp = behind(*ip, ipHeader);
  if (ipHeader < shortestIp || !udp || udp->size() < udpHeader) return std::nullopt;
  const std::size_t length = bigEndian16(*udp, 4);
  if (length < udpHeader) return std::nullopt;
  return UdpDatagram{addressIn(*ip, 12, *udp, 0), addressIn(*ip, 16, *udp, 2),
                     udp->subspan(udpHeader, std::min(length, udp->size()) - udpHeader), udp->size() >= length};
}

}  // namespace tembra::recording
