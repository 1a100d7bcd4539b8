#include "cli/record/datagram.h"

#include <netinet/ip.h>
#include <netinet/udp.h>

#include <cstring>

namespace tembra::cli {
namespace {

constexpr unsigned kFragmentBits = 0x3FFF;  // more fragments, or not the first one

sockaddr_in addressOf(std::uint32_t host, std::uint16_t port) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = host;
  address.sin_port = port;
  return address;
}

}  // namespace

std::optional<Datagram> datagramIn(std::span<const unsigned char> packet) {
  iphdr ip{};
  udphdr udp{};
  if (packet.size() < sizeof ip) return std::nullopt;
  std::memcpy(&ip, packet.data(), sizeof ip);
  const std::size_t header = std::size_t{ip.ihl} * 4;
  const bool isWhole = ip.version == 4 && ip.protocol == IPPROTO_UDP && (ntohs(ip.frag_off) & kFragmentBits) == 0;
  if (!isWhole || header < sizeof ip || packet.size() < header + sizeof udp) return std::nullopt;
  packet = packet.subspan(header);
  std::memcpy(&udp, packet.data(), sizeof udp);
  const std::size_t length = ntohs(udp.len);
  if (length < sizeof udp || packet.size() < length) return std::nullopt;
  Datagram datagram{0, addressOf(ip.saddr, udp.source), addressOf(ip.daddr, udp.dest), {}};
  const auto payload = packet.subspan(sizeof udp, length - sizeof udp);
  datagram.payload.assign(payload.begin(), payload.end());
  return datagram;
}

}  // namespace tembra::cli
