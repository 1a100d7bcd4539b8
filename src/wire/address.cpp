// "host:port" texts into IPv4 socket addresses.
#include <arpa/inet.h>
#include <netdb.h>
#include <tembra/endpoints.h>

#include <cctype>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <mutex>

namespace tembra {
namespace {

constexpr int kBadHost = -1;
constexpr int kBadPort = -2;
constexpr long kLargestPort = 32767;

// gethostbyname and getservbyname answer in storage that all threads share.
std::mutex nameLookups;

bool isDigit(char c) { return std::isdigit(static_cast<unsigned char>(c)) != 0; }

bool isWildcard(const char* part) { return std::strcmp(part, "*") == 0; }

bool lookUpHost(const char* name, in_addr& address) {
  const std::lock_guard<std::mutex> lock(nameLookups);
  const hostent* host = gethostbyname(name);
  if (host == nullptr || host->h_addrtype != AF_INET || host->h_addr_list[0] == nullptr) return false;
  std::memcpy(&address, host->h_addr_list[0], sizeof address);
  return true;
}

bool resolveHost(const char* host, in_addr& address) {
  if (isWildcard(host)) return true;
  if (!isDigit(host[0])) return lookUpHost(host, address);
  address.s_addr = inet_addr(host);
  in_addr validated{};
  return inet_aton(host, &validated) != 0;
}

bool lookUpService(const char* name, const char* protocol, in_port_t& port) {
  const std::lock_guard<std::mutex> lock(nameLookups);
  const servent* service = getservbyname(name, protocol);
  if (service == nullptr) return false;
  port = static_cast<in_port_t>(service->s_port);
  return true;
}

bool resolvePort(const char* text, const char* protocol, in_port_t& port) {
  if (isWildcard(text)) return true;
  if (!isDigit(text[0])) return lookUpService(text, protocol, port);
  char* end = nullptr;
  const long number = std::strtol(text, &end, 10);
  if (*end != '\0' || number > kLargestPort) return false;
  port = htons(static_cast<in_port_t>(number));
  return true;
}

/// A text that may be changed. Only a long one takes memory from the heap; null when there is none.
class Copy {
 public:
  explicit Copy(const char* text)
      : text_(std::strlen(text) < sizeof short_ ? std::strcpy(short_, text) : strdup(text)) {}
  ~Copy() {
    if (text_ != short_) std::free(text_);
  }
  Copy(const Copy&) = delete;
  Copy& operator=(const Copy&) = delete;

  [[nodiscard]] char* text() const { return text_; }

 private:
  char short_[64] = {};
  char* text_;
};

}  // namespace
}  // namespace tembra

using namespace tembra;

int mkaddr(void* addr, int* addrlen, char* text, char* protocol) {
  Copy copy(text == nullptr ? "" : text);
  if (copy.text() == nullptr) return kBadHost;
  char* rest = nullptr;
  const char* host = strtok_r(copy.text(), ":", &rest);
  const char* port = strtok_r(nullptr, "\n", &rest);

  std::memset(addr, 0, *addrlen < 0 ? sizeof(sockaddr_in) : static_cast<std::size_t>(*addrlen));
  auto& address = *static_cast<sockaddr_in*>(addr);
  address.sin_family = AF_INET;
  address.sin_port = 0;
  address.sin_addr.s_addr = INADDR_ANY;
  if (!resolveHost(host == nullptr ? "*" : host, address.sin_addr)) return kBadHost;
  if (!resolvePort(port == nullptr ? "*" : port, protocol == nullptr ? "tcp" : protocol, address.sin_port)) {
    return kBadPort;
  }
  *addrlen = sizeof(sockaddr_in);
  return 0;
}

int printAddrInfo(sockaddr_in addr) {
  char dotted[INET_ADDRSTRLEN] = {};
  inet_ntop(AF_INET, &addr.sin_addr, dotted, sizeof dotted);
  return std::printf("\n\n *** Addr %s \n *** port %d \n\n", dotted, ntohs(addr.sin_port));
}
