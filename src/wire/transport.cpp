// Sending by destination, and telling senders apart.
#include <netinet/in.h>
#include <sys/socket.h>
#include <tembra/association.h>
#include <tembra/endpoints.h>

#include <cerrno>
#include <cstdio>
#include <cstring>

#include "support/failures.h"
#include "support/log.h"
#include "support/state_lock.h"
#include "support/text_writer.h"

namespace tembra {
namespace {

struct Destination {
  ServerType type;
  std::size_t datagramLength;
  const sockaddr_in* address;
  const int* addressLength;
};

constexpr Destination kDestinations[] = {
    {SERVER_ZIGBEE, sizeof(ZigbeeCommand), &adr_zigbee, &len_zigbee},
    {SERVER_ZWAVE, sizeof(ZwaveCommand), &adr_ozw, &len_ozw},
    {SERVER_HUE, sizeof(HueCommand), &adr_hueserver, &len_hueserver},
    {SERVER_NEST, sizeof(NestCommand), &adr_nest, &len_nest},
    {SERVER_HA, sizeof(HaNotice), &adr_ha_assoc, &len_ha_assoc},
};

int sendTo(const Destination& destination, int sock, const void* datagram) {
  const auto* address = reinterpret_cast<const sockaddr*>(destination.address);
  const auto length = static_cast<socklen_t>(*destination.addressLength);
  if (sendto(sock, datagram, destination.datagramLength, 0, address, length) >= 0) return 0;
  recordSendFailure(destination.type, errno);
  std::perror("sendto error");
  return -1;
}

struct Sender {
  const char* text;
  ClientType type;
};

// Fixed texts, not the endpoint table: a front end that moves an endpoint does not change how senders are told apart.
constexpr Sender kSenders[] = {
    {"127.255.255.254:8888", CLIENT_ZWAVE}, {"127.255.255.253:8888", CLIENT_ZIGBEE}, {"127.255.255.1:9999", CLIENT_HA},
    {"127.255.255.252:8888", CLIENT_HUE},   {"127.255.255.251:8888", CLIENT_NEST},
};

// inet_ntop goes through printf: on every datagram that would be dearer than all the rest of finding its sender.
void writeDotted(in_addr address, char (&out)[INET_ADDRSTRLEN]) {
  unsigned char octets[sizeof address];
  std::memcpy(octets, &address, sizeof address);
  TextWriter(out, sizeof out) << octets[0] << "." << octets[1] << "." << octets[2] << "." << octets[3];
}

}  // namespace
}  // namespace tembra

using namespace tembra;

int TembraAssociation::sendToServers(ServerType type, void* datagram) {
  // Sending under the lock keeps the datagram off a descriptor that another thread is closing.
  const StateLock lock;
  if (type == SERVER_MESH) {
    log(*this, Level::kWarning, "send to mesh server Not Implemented");  // [sic] no prefix
    return 0;
  }
  for (const Destination& destination : kDestinations) {
    if (destination.type == type) return sendTo(destination, sock, datagram);
  }
  log(*this, Level::kError, TEMBRA_LOG_PREFIX "Unknown server specified");
  return -1;
}

ClientType TembraAssociation::findClientType(in_addr address) {
  char dotted[INET_ADDRSTRLEN];
  writeDotted(address, dotted);
  // A part of a known text is enough: 127.255.255.25 passes for 127.255.255.254 [sic].
  for (const Sender& sender : kSenders) {
    if (std::strstr(sender.text, dotted) != nullptr) return sender.type;
  }
  return CLIENT_UNKNOWN;
}
