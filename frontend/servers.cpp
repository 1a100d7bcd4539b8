#include "servers.h"

#include <netinet/in.h>
#include <tembra/association.h>
#include <tembra/endpoints.h>
#include <tembra/frontend.h>

#include <cstdio>
#include <cstring>
#include <memory>
#include <new>

namespace tembra::frontend {
namespace {

const sockaddr_in* addressOf(ServerType server) {
  switch (server) {
    case SERVER_ZIGBEE:
      return &adr_zigbee;
    case SERVER_ZWAVE:
      return &adr_ozw;
    case SERVER_HUE:
      return &adr_hueserver;
    case SERVER_NEST:
      return &adr_nest;
    default:
      return &adr_ha_assoc;
  }
}

struct Closer {
  void operator()(std::FILE* file) const { std::fclose(file); }
};
using File = std::unique_ptr<std::FILE, Closer>;

// One socket of the table, "  12: FEFFFF7F:22B8 00000000:0000 ...": the address in network byte order as the machine
// reads it, the port as a number, both hexadecimal. An address of zeros (longer for IPv6) is any address.
bool serves(const char* row, const sockaddr_in& wanted) {
  char address[33];
  unsigned port = 0;
  if (std::sscanf(row, " %*u: %32[0-9A-Fa-f]:%4x", address, &port) != 2) return false;
  char host[9];
  std::snprintf(host, sizeof host, "%08X", wanted.sin_addr.s_addr);
  const bool any = std::strspn(address, "0") == std::strlen(address);
  return (any || std::strcmp(address, host) == 0) && port == ntohs(wanted.sin_port);
}

enum class Found { kNoTable, kNo, kYes };

Found lookIn(const char* table, const sockaddr_in& wanted) {
  const File file(std::fopen(table, "re"));
  if (!file) return Found::kNoTable;
  char row[256];
  while (std::fgets(row, sizeof row, file.get()) != nullptr) {
    if (serves(row, wanted)) return Found::kYes;
  }
  return Found::kNo;
}

}  // namespace

bool listens(ServerType server) {
  const sockaddr_in& wanted = *addressOf(server);
  const Found found = lookIn("/proc/net/udp", wanted);
  return found != Found::kNo || lookIn("/proc/net/udp6", wanted) == Found::kYes;
}

}  // namespace tembra::frontend

int tembra_server_listens(int server) {
  if (server < SERVER_ZIGBEE || server > SERVER_HA) return 0;
  try {
    TembraAssociation::getInstance();  // fills in the addresses
    return tembra::frontend::listens(static_cast<ServerType>(server)) ? 1 : 0;
  } catch (const std::bad_alloc&) {
    return 1;  // as where the system does not tell
  }
}
