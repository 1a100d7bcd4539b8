// The endpoint table: every daemon's address text, its resolved address, and what to say when it is bad.
#include <tembra/association.h>
#include <tembra/endpoints.h>

#include "support/log.h"
#include "support/state_lock.h"
#include "wire/display_error.h"

namespace tembra {
namespace {

char assocText[] = "127.255.255.4:8888";
char haAssocText[] = "127.255.255.1:9999";
char haServerText[] = "127.255.255.1:8888";
char ozwText[] = "127.255.255.254:8888";
char zigbeeText[] = "127.255.255.253:8888";
char hueServerText[] = "127.255.255.252:8888";
char nestServerText[] = "127.255.255.251:8888";
char webText[] = "127.255.255.11:8888";

}  // namespace
}  // namespace tembra

using namespace tembra;

char* assoc_adr = assocText;
char* ha_assoc_adr = haAssocText;
char* haserver_adr = haServerText;
char* ozw_adr = ozwText;
char* zigbee_adr = zigbeeText;
char* hue_server_adr = hueServerText;
char* nest_server_adr = nestServerText;
char* web_adr = webText;

sockaddr_in adr_ha_assoc;
sockaddr_in adr_haserver;
sockaddr_in adr_ozw;
sockaddr_in adr_zigbee;
sockaddr_in adr_hueserver;
sockaddr_in adr_nest;
sockaddr_in adr_web;

int len_assoc;
int len_ha_assoc;
int len_haserver;
int len_ozw;
int len_zigbee;
int len_hueserver;
int len_nest;
int len_web;

namespace tembra {
namespace {

constexpr int kHostRefused = -1;
char udp[] = "udp";

struct Endpoint {
  char* const* text;
  sockaddr_in* address;  // null: the object's own address
  int* length;
  const char* complaint;
};

constexpr Endpoint kEndpoints[] = {
    {&assoc_adr, nullptr, &len_assoc, TEMBRA_LOG_PREFIX "Bad Association client address"},
    {&ha_assoc_adr, &adr_ha_assoc, &len_ha_assoc, TEMBRA_LOG_PREFIX "Bad Haserver association Client address"},
    {&haserver_adr, &adr_haserver, &len_haserver, TEMBRA_LOG_PREFIX "Bad HA server address"},
    {&ozw_adr, &adr_ozw, &len_ozw, TEMBRA_LOG_PREFIX "Bad OZW Server address"},
    {&zigbee_adr, &adr_zigbee, &len_zigbee, TEMBRA_LOG_PREFIX "Bad Zigbee Server address"},
    {&hue_server_adr, &adr_hueserver, &len_hueserver, TEMBRA_LOG_PREFIX "Bad Hue Server address"},
    {&nest_server_adr, &adr_nest, &len_nest, TEMBRA_LOG_PREFIX "Bad Nest Server address"},
    {&web_adr, &adr_web, &len_web, TEMBRA_LOG_PREFIX "Bad web Client address"},
};

}  // namespace
}  // namespace tembra

int TembraAssociation::ConnectToServers() {
  const StateLock lock;
  for (const Endpoint& endpoint : kEndpoints) {
    *endpoint.length = sizeof(sockaddr_in);
    sockaddr_in* address = endpoint.address == nullptr ? &localAddr : endpoint.address;
    // A bad port leaves the endpoint with port 0 and is not reported: only a bad host is.
    if (mkaddr(address, endpoint.length, *endpoint.text, udp) == kHostRefused) displayError(endpoint.complaint);
  }
  return 0;
}
