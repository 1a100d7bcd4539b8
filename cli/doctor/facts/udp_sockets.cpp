#include "cli/doctor/facts/udp_sockets.h"

#include <arpa/inet.h>
#include <sys/socket.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>

#include "platform/descriptor.h"

namespace tembra::cli::doctor {
namespace {

constexpr char kMappedIpv4[] = "0000000000000000FFFF0000";

// An address as the machine reads its bytes, in hexadecimal digits: 8 of IPv4, 32 of IPv6.
void readAddress(std::string digits, UdpSocket& socket) {
  if (digits.starts_with(kMappedIpv4)) digits.erase(0, sizeof kMappedIpv4 - 1);
  socket.isAnyAddress = digits.find_first_not_of('0') == std::string::npos;
  constexpr std::size_t kOfIpv4 = 8;
  constexpr int kHexadecimal = 16;
  if (digits.size() == kOfIpv4) {
    socket.address.s_addr = static_cast<in_addr_t>(std::strtoul(digits.c_str(), nullptr, kHexadecimal));
  }
  socket.isIpv6 = digits.size() > kOfIpv4;
}

// "  12: FEFFFF7F:22B8 00000000:0000 07 00000000:00000000 00:00000000 00000000  0  0 1234 2 0000000000000000 0"
bool readSocket(const char* row, UdpSocket& socket) {
  char address[33];
  const int read =
      std::sscanf(row, " %*u: %32[0-9A-Fa-f]:%4x %*s %*s %*8[0-9A-Fa-f]:%8lx %*s %*s %u %*s %lu %*s %*s %lu", address,
                  &socket.port, &socket.unread, &socket.user, &socket.inode, &socket.drops);
  constexpr int kWithInode = 5;
  if (read < kWithInode) return false;
  readAddress(address, socket);
  return true;
}

bool readTable(const char* path, std::vector<UdpSocket>& sockets) {
  std::ifstream table(path);
  for (std::string row; std::getline(table, row);) {
    UdpSocket socket;
    if (readSocket(row.c_str(), socket)) sockets.push_back(socket);
  }
  return !table.bad() && table.eof();
}

// Whether a socket of every IPv6 address keeps the port of IPv4, too. Nothing uses the address that is tried.
bool takesIpv4(unsigned port) {
  constexpr in_addr_t kUnused = 0x7FFF'FF64;  // 127.255.255.100
  const Descriptor trial(socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0));
  sockaddr_in place{};
  place.sin_family = AF_INET;
  place.sin_port = htons(static_cast<in_port_t>(port));
  place.sin_addr.s_addr = htonl(kUnused);
  return bind(trial.get(), reinterpret_cast<const sockaddr*>(&place), sizeof place) != 0 && errno == EADDRINUSE;
}

}  // namespace

std::vector<UdpSocket> UdpTable::at(const sockaddr_in& address) const {
  std::vector<UdpSocket> found;
  std::ranges::copy_if(sockets, std::back_inserter(found), [&address](const UdpSocket& socket) {
    const bool isThere = socket.isAnyAddress || socket.address.s_addr == address.sin_addr.s_addr;
    return isThere && socket.port == ntohs(address.sin_port) && (!socket.isIpv6 || takesIpv4(socket.port));
  });
  return found;
}

UdpTable readUdpTable() {
  UdpTable table;
  table.isTold = readTable("/proc/net/udp", table.sockets);
  readTable("/proc/net/udp6", table.sockets);
  return table;
}

std::string addressText(const sockaddr_in& address) {
  char text[INET_ADDRSTRLEN] = {};
  inet_ntop(AF_INET, &address.sin_addr, text, sizeof text);
  return std::string(text) + ":" + std::to_string(ntohs(address.sin_port));
}

}  // namespace tembra::cli::doctor
