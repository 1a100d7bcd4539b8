// Routers whose network, daemons or front ends are broken.
#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <net/if.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>

#include "doctor/broken_router.h"
#include "support/files.h"
#include "support/udp_listener.h"

namespace tembra::test {
namespace {

/// A socket, closed with the object.
class Socket {
 public:
  Socket() : number_(socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0)) {}
  Socket(const Socket&) = delete;
  Socket& operator=(const Socket&) = delete;
  ~Socket() { close(number_); }
  [[nodiscard]] int number() const { return number_; }

 private:
  int number_;
};

Kept noLoopback() {
  const Socket any;
  ifreq request{};
  std::string("lo").copy(request.ifr_name, sizeof request.ifr_name);
  EXPECT_EQ(ioctl(any.number(), SIOCSIFFLAGS, &request), 0);
  return nullptr;
}

Kept routedLocalnet() {
  writeFile("/proc/sys/net/ipv4/conf/all/route_localnet", "1");
  return nullptr;
}

void sendTo(const char* address) {
  const Socket sender;
  sockaddr_in to{};
  to.sin_family = AF_INET;
  to.sin_port = htons(8888);
  inet_pton(AF_INET, address, &to.sin_addr);
  const std::string datagram(1000, 'x');
  sendto(sender.number(), datagram.data(), datagram.size(), 0, reinterpret_cast<const sockaddr*>(&to), sizeof to);
}

Kept hangingDaemon() {
  auto daemon = std::make_shared<UdpListener>("127.255.255.254", 8888);
  sendTo("127.255.255.254");
  return daemon;
}

Kept twoDaemons() {
  auto pair = std::make_shared<std::pair<Socket, Socket>>();
  sockaddr_in place{};
  place.sin_family = AF_INET;
  place.sin_port = htons(8888);
  inet_pton(AF_INET, "127.255.255.252", &place.sin_addr);
  for (const Socket* each : {&pair->first, &pair->second}) {
    const int yes = 1;
    EXPECT_EQ(setsockopt(each->number(), SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes), 0);
    EXPECT_EQ(bind(each->number(), reinterpret_cast<const sockaddr*>(&place), sizeof place), 0);
  }
  return pair;
}

Kept onlyHome() {
  Database().create();
  return std::make_shared<UdpListener>("127.255.255.1", 9999);
}

Kept everybodyButHome() {
  Database().create();
  auto daemons = std::make_shared<std::vector<std::unique_ptr<UdpListener>>>();
  for (const char* address : {"127.255.255.254", "127.255.255.253", "127.255.255.252", "127.255.255.251"}) {
    daemons->push_back(std::make_unique<UdpListener>(address, 8888));
  }
  return daemons;
}

Kept takenAddress() { return std::make_shared<UdpListener>("127.255.255.4", 8888); }

Kept takenEverywhere() {
  return std::make_shared<std::pair<Kept, Kept>>(onlyHome(), std::make_shared<UdpListener>("0.0.0.0", 8888));
}

Kept openFolder() {
  std::filesystem::create_directory("/tmp/front-ends");
  EXPECT_EQ(chmod("/tmp/front-ends", 0777), 0);
  return nullptr;
}

Kept noSocketFile() {
  std::filesystem::create_directory("/tmp/front-ends");
  writeFile("/tmp/front-ends/socket", "x");
  return nullptr;
}

Kept hangingFrontEnd() {
  auto add = std::make_shared<Program>(assocCommand({"add", "--verbose"}));
  add->waitFor(R"("phase":"button")");
  add->signal(SIGSTOP);
  return add;
}

const BrokenRouter kBrokenNetworks[] = {
    {"NoLoopback", noLoopback, {"loopback"}, "the interface lo is down."},
    {"Refused",
     nothing,
     {"datagram"},
     "sendto from 127.255.255.4:8888 to itself: Operation not permitted.",
     {},
     bentCalls("sendto")},
    {"RoutedLocalnet", routedLocalnet, {"route-localnet"}, "net.ipv4.conf.all.route_localnet is 1."},
    {"HangingDaemon",
     hangingDaemon,
     {"server-zwave"},
     " bytes wait at 127.255.255.254:8888 for doctor-test (process ",
     {},
     {},
     {"--without", "zwave"}},
    {"NoZwaveServer",
     nothing,
     {"server-zwave"},
     "nobody listens at 127.255.255.254:8888.",
     {},
     {},
     {"--without", "zwave"}},
    {"NoZigbeeServer",
     nothing,
     {"server-zigbee"},
     "nobody listens at 127.255.255.253:8888.",
     {},
     {},
     {"--without", "zigbee"}},
    {"NoHueServer", nothing, {"server-hue"}, "nobody listens at 127.255.255.252:8888.", {}, {}, {"--without", "hue"}},
    {"NoNestServer",
     nothing,
     {"server-nest"},
     "nobody listens at 127.255.255.251:8888.",
     {},
     {},
     {"--without", "nest"}},
    {"NoHaServer", everybodyButHome, {"server-ha"}, "nobody listens at 127.255.255.1:9999.", {}, {}, {"none"}},
    {"TwoDaemons",
     twoDaemons,
     {"server-hue"},
     "Two programs listen in the Hue server's place.",
     {},
     {},
     {"--without", "hue"}},
    {"TakenAddress", takenAddress, {"port"}, "127.255.255.4:8888 belongs to doctor-test (process "},
    {"TakenEverywhere", takenEverywhere, {"port"}, "0.0.0.0:8888 belongs to doctor-test (process ", {}, {}, {"none"}},
    {"OpenWatchFolder", openFolder, {"watch-socket"}, "/tmp/front-ends belongs to user "},
    {"NoWatchSocket", noSocketFile, {"watch-socket"}, "/tmp/front-ends/socket is no socket."},
    {"HangingFrontEnd", hangingFrontEnd, {"watch-socket"}, "/tmp/front-ends/socket: Connection timed out."},
};

class BrokenNetwork : public testing::TestWithParam<BrokenRouter> {};

TEST_P(BrokenNetwork, IsFound) { expectFindings(GetParam()); }

INSTANTIATE_TEST_SUITE_P(Doctor, BrokenNetwork, testing::ValuesIn(kBrokenNetworks),
                         [](const auto& test) { return test.param.name; });

}  // namespace
}  // namespace tembra::test
