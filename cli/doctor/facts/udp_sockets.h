// The UDP sockets of this network, as the kernel lists them.
#ifndef TEMBRA_CLI_DOCTOR_UDP_SOCKETS_H
#define TEMBRA_CLI_DOCTOR_UDP_SOCKETS_H

#include <netinet/in.h>
#include <sys/types.h>

#include <string>
#include <vector>

namespace tembra::cli::doctor {

struct UdpSocket {
  bool isAnyAddress = false;
  bool isIpv6 = false;  ///< and of every address: the kernel does not tell whether of IPv4, too
  in_addr address{};
  unsigned port = 0;
  uid_t user = 0;
  unsigned long inode = 0;   ///< of "socket:[12345]"
  unsigned long unread = 0;  ///< bytes that wait for their reader
  unsigned long drops = 0;   ///< datagrams for which there was no room
};

struct UdpTable {
  bool isTold = false;  ///< the kernel has such a table
  std::vector<UdpSocket> sockets;

  /// Those that get what is sent there: at this address, or at every address. Tries out whether sockets of IPv6 do.
  [[nodiscard]] std::vector<UdpSocket> at(const sockaddr_in& address) const;
};

[[nodiscard]] UdpTable readUdpTable();

/// "127.255.255.4:8888"
[[nodiscard]] std::string addressText(const sockaddr_in& address);

}  // namespace tembra::cli::doctor

#endif
