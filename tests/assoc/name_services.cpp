// The system's host and service names, as the tests define them: no network and no file of the machine is asked. Host
// "router.home" is 127.9.8.7, "six.home" has an IPv6 address only; service "tembra" is 4321 by udp and 1234 by tcp.

#include <arpa/inet.h>
#include <netdb.h>

#include <cstring>
#include <string>

namespace {

char addressOfFour[] = {127, 9, 8, 7};
char addressOfSix[16] = {};
char* addressesOfFour[] = {addressOfFour, nullptr};
char* addressesOfSix[] = {addressOfSix, nullptr};
char hostOfFour[] = "router.home";
char hostOfSix[] = "six.home";
hostent hosts[] = {{hostOfFour, nullptr, AF_INET, 4, addressesOfFour},
                   {hostOfSix, nullptr, AF_INET6, 16, addressesOfSix}};

char serviceName[] = "tembra";
char udp[] = "udp";
char tcp[] = "tcp";
servent services[] = {{serviceName, nullptr, htons(4321), udp}, {serviceName, nullptr, htons(1234), tcp}};

}  // namespace

extern "C" hostent* gethostbyname(const char* name) {
  for (hostent& host : hosts) {
    if (std::strcmp(host.h_name, name) == 0) return &host;
  }
  return nullptr;
}

extern "C" servent* getservbyname(const char* name, const char* protocol) {
  for (servent& service : services) {
    if (std::strcmp(service.s_name, name) == 0 && std::strcmp(service.s_proto, protocol) == 0) return &service;
  }
  return nullptr;
}
