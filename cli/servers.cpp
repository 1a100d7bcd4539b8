#include "servers.h"

#include <arpa/inet.h>
#include <tembra/endpoints.h>

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <sstream>
#include <string>

#include "failure.h"

namespace tembra::cli {
namespace {

struct Server {
  ServerType type;
  const char* name;
  const sockaddr_in* address;
};

const Server kServers[] = {
    {SERVER_ZIGBEE, "the ZigBee server", &adr_zigbee},        {SERVER_ZWAVE, "the Z-Wave server", &adr_ozw},
    {SERVER_HUE, "the Hue server", &adr_hueserver},           {SERVER_NEST, "the Nest server", &adr_nest},
    {SERVER_HA, "the home-automation server", &adr_ha_assoc},
};

const Server& find(ServerType type) { return *std::ranges::find(kServers, type, &Server::type); }

std::string hexadecimal(const char* format, unsigned number) {
  char text[16];
  std::snprintf(text, sizeof text, format, number);
  return text;
}

// One socket of the kernel's table, "  12: FEFFFF7F:22B8 00000000:0000 ...": the address in network byte order as the
// machine reads it, the port as a number, both hexadecimal. An address of zeros (longer for IPv6) is any address.
bool servesAddress(const std::string& row, const sockaddr_in& wanted) {
  std::istringstream fields(row);
  std::string number;
  std::string address;
  std::string port;
  fields >> number;
  std::getline(fields >> std::ws, address, ':');
  fields >> port;
  const bool any = !address.empty() && address.find_first_not_of('0') == std::string::npos;
  return (any || address == hexadecimal("%08X", wanted.sin_addr.s_addr)) &&
         port == hexadecimal("%04X", ntohs(wanted.sin_port));
}

bool isServed(const sockaddr_in& wanted, std::ifstream& table) {
  for (std::string row; std::getline(table, row);) {
    if (servesAddress(row, wanted)) return true;
  }
  return false;
}

// True as well where the kernel does not tell.
bool listens(const Server& server) {
  std::ifstream table("/proc/net/udp");
  std::ifstream tableOfIpv6("/proc/net/udp6");
  return !table || isServed(*server.address, table) || isServed(*server.address, tableOfIpv6);
}

std::string place(const Server& server) {
  char host[INET_ADDRSTRLEN] = {};
  inet_ntop(AF_INET, &server.address->sin_addr, host, sizeof host);
  return std::string(server.name) + " (" + host + ":" + std::to_string(ntohs(server.address->sin_port)) + ")";
}

}  // namespace

void requireOneOf(const std::vector<ServerType>& servers) {
  std::string missing;
  for (const ServerType type : servers) {
    if (listens(find(type))) return;
    missing += (missing.empty() ? "" : " nor ") + place(find(type));
  }
  const char* nobody = servers.size() > 1 ? "neither " : "";
  const char* runs = servers.size() > 1 ? " is running." : " is not running.";
  throw Failure(kNoConnection, "no connection: " + (nobody + missing) + runs);
}

void complainOfMissing(const std::vector<ServerType>& servers) {
  for (const ServerType type : servers) {
    if (!listens(find(type))) complain(place(find(type)) + " is not running and hears nothing of this.");
  }
}

}  // namespace tembra::cli
