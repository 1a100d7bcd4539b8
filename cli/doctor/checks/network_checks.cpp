// Whether datagrams can travel between the library and the daemons.
#include <arpa/inet.h>
#include <ifaddrs.h>
#include <net/if.h>
#include <poll.h>
#include <sys/socket.h>
#include <tembra/endpoints.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <memory>
#include <system_error>

#include "cli/doctor/checks/checks.h"
#include "cli/doctor/facts/router.h"
#include "platform/descriptor.h"

namespace tembra::cli::doctor {
namespace {

/// A socket of the doctor's own at an address of the range.
struct OwnSocket {
  Descriptor descriptor;
  int error = 0;
};

OwnSocket bindAt(const sockaddr_in& address) {
  OwnSocket own{Descriptor(socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0))};
  const auto* const place = reinterpret_cast<const sockaddr*>(&address);
  if (!own.descriptor.valid() || bind(own.descriptor.get(), place, sizeof address) != 0) own.error = errno;
  return own;
}

OwnSocket bindAtAnyPort(sockaddr_in address) {
  address.sin_port = 0;
  return bindAt(address);
}

std::string hostText(const sockaddr_in& address) {
  const std::string text = addressText(address);
  return text.substr(0, text.find(':'));
}

// The kernel binds the addresses of an interface that is down, too.
bool isLoopbackUp() {
  ifaddrs* all = nullptr;
  if (getifaddrs(&all) != 0) return true;
  const std::unique_ptr<ifaddrs, decltype(&freeifaddrs)> owner(all, &freeifaddrs);
  for (const ifaddrs* each = all; each != nullptr; each = each->ifa_next) {
    if ((each->ifa_flags & IFF_LOOPBACK) != 0) return (each->ifa_flags & IFF_UP) != 0;
  }
  return false;
}

// What is wrong with the loopback range, as a proof; empty: nothing.
std::string loopbackFault() {
  for (char* const text : {assoc_adr, ha_assoc_adr, ozw_adr, zigbee_adr, hue_server_adr, nest_server_adr}) {
    const sockaddr_in address = endpoint(text);
    const OwnSocket own = bindAtAnyPort(address);
    if (own.error != 0) return "bind " + hostText(address) + ": " + std::strerror(own.error) + ".";
  }
  return isLoopbackUp() ? "" : "the interface lo is down.";
}

// To itself: no daemon hears of it.
int sendToItself(int descriptor) {
  sockaddr_in own{};
  socklen_t length = sizeof own;
  auto* const place = reinterpret_cast<sockaddr*>(&own);
  if (getsockname(descriptor, place, &length) != 0) return errno;
  constexpr char kText[] = "tembra-assoc doctor";
  return sendto(descriptor, kText, sizeof kText, 0, place, length) < 0 ? errno : 0;
}

bool arrives(int descriptor) {
  constexpr int kMilliseconds = 500;
  pollfd one{descriptor, POLLIN, 0};
  return poll(&one, 1, kMilliseconds) == 1;
}

std::string firstLineOf(const std::filesystem::path& path) {
  std::ifstream file(path);
  std::string line;
  std::getline(file, line);
  return line;
}

Verdict reachable(const std::string& setting, const std::string& value) {
  return finding("Other machines may reach the daemons.", setting + " is " + value + ".",
                 "Set it to 0: sysctl -w " + setting + "=0.");
}

}  // namespace

Verdict checkLoopback(Router& /*router*/) {
  const std::string fault = loopbackFault();
  if (fault.empty()) return well("The loopback addresses 127.255.255.x are there.");
  return finding("The loopback addresses of library and daemons do not work.", fault,
                 "Bring lo up with the whole of 127.0.0.0/8: ip addr add 127.0.0.1/8 dev lo, ip link set lo up.");
}

Verdict checkDatagram(Router& /*router*/) {
  if (!loopbackFault().empty()) return note("Sending was not tried, because the loopback addresses do not work.");
  const sockaddr_in address = endpoint(assoc_adr);
  OwnSocket own = bindAt(address);
  const bool isOwnPort = own.error == 0;
  if (!isOwnPort) own = bindAtAnyPort(address);  // a front end has the library's
  const std::string way = "from " + (isOwnPort ? addressText(address) : hostText(address)) + " to itself";
  if (const int error = sendToItself(own.descriptor.get()); error != 0) {
    return finding("No datagram can be sent.", "sendto " + way + ": " + std::strerror(error) + ".",
                   "Look for a packet rule that drops loopback datagrams of this user: nft list ruleset, iptables -L.");
  }
  if (arrives(own.descriptor.get())) {
    return well("A datagram " + way + " arrives." +
                (isOwnPort ? "" : " A front end has the library's port 8888, which was not tried."));
  }
  return finding("A datagram that is sent does not arrive.", "nothing came in 0.5 s " + way + ".",
                 "Look for a packet rule that drops loopback datagrams: nft list ruleset, iptables -L.");
}

// Each interface has a setting; that of "all" counts for every one.
Verdict checkRouteLocalnet(Router& /*router*/) {
  const std::string begin = "net.ipv4.conf.";
  constexpr char kFolder[] = "/proc/sys/net/ipv4/conf";
  std::string unread;
  std::error_code failure;
  std::filesystem::directory_iterator each(kFolder, failure);
  for (; !failure && each != std::filesystem::directory_iterator(); each.increment(failure)) {
    const std::string name = each->path().filename();
    std::string setting = begin;
    setting += name + ".route_localnet";
    const std::string value = firstLineOf(each->path() / "route_localnet");
    if (value.empty()) unread = each->path() / "route_localnet";
    if (value.empty() || value == "0" || name == "lo") continue;
    return reachable(setting, value);
  }
  const std::string untold = "Whether other machines reach the daemons cannot be told.";
  if (failure) return note(untold, std::string(kFolder) + ": " + failure.message() + ".");
  if (!unread.empty()) return note(untold, unread + " cannot be read.");
  return well("No other machine reaches the daemons' addresses.");
}

Verdict checkLostDatagrams(Router& router) {
  for (char* const text : {assoc_adr, ha_assoc_adr, ozw_adr, zigbee_adr, hue_server_adr, nest_server_adr}) {
    for (const UdpSocket& socket : router.udp().at(endpoint(text))) {
      if (socket.drops == 0) continue;
      return note("Datagrams were lost because their receiver did not read in time.",
                  counted(socket.drops, "datagram") + " to " + text + " (drops in /proc/net/udp).",
                  "See whether that process hangs or is flooded; the count ends when it is started again.");
    }
  }
  return router.udp().isTold ? well("No datagram was lost.") : note("The kernel does not tell of lost datagrams.");
}

}  // namespace tembra::cli::doctor
