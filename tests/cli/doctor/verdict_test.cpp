// What the doctor says of one check where nothing is broken, or where this user cannot tell.
#include <arpa/inet.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/mount.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>

#include "doctor/broken_router.h"
#include "support/files.h"
#include "support/udp_listener.h"

namespace tembra::test {
namespace {

/// The state of one check, on a router without findings unless their number is told.
struct Judged {
  const char* name;
  Kept (*make)();
  const char* id;
  const char* status;
  const char* holds;  ///< stands in its text, proof or advice
  std::vector<std::string> arguments{};
  kit::Settings settings{};
  int exitStatus = 0;
  std::vector<std::string> simulator{};  ///< its options; "none": no daemons
};

void PrintTo(const Judged& row, std::ostream* out) { *out << row.name; }

/// A socket at [::]:8888, which leaves IPv4 alone or takes the port there, too.
class EveryAddress {
 public:
  explicit EveryAddress(bool leavesIpv4) : number_(socket(AF_INET6, SOCK_DGRAM | SOCK_CLOEXEC, 0)) {
    const int only = leavesIpv4 ? 1 : 0;
    sockaddr_in6 place{};
    place.sin6_family = AF_INET6;
    place.sin6_port = htons(8888);
    EXPECT_EQ(setsockopt(number_, IPPROTO_IPV6, IPV6_V6ONLY, &only, sizeof only), 0);
    EXPECT_EQ(bind(number_, reinterpret_cast<const sockaddr*>(&place), sizeof place), 0);
  }
  EveryAddress(const EveryAddress&) = delete;
  EveryAddress& operator=(const EveryAddress&) = delete;
  ~EveryAddress() { close(number_); }

 private:
  int number_;
};

Kept ipv6Only() {
  Database().create();
  return std::make_shared<EveryAddress>(true);
}

Kept lockedRecords() { return std::make_shared<OpenDatabase>(); }

Kept silentFrontEnd() {
  auto add = std::make_shared<Program>(assocCommand({"add", "--watch-path", "/tmp/elsewhere/socket", "--verbose"}));
  add->waitFor(R"("phase":"button")");
  return add;
}

Kept negativeMeshId() {
  writeFile("/tmp/negative", "MeshSlaveID=-12345678\n");
  return nullptr;
}

Kept noSettings() {
  EXPECT_EQ(mount("tmpfs", "/proc/sys/net", "tmpfs", 0, nullptr), 0);
  return nullptr;
}

// A daemon that lost datagrams, and then read all that had come.
Kept floodedOnce() {
  auto daemon = std::make_shared<UdpListener>("127.255.255.4", 8888);
  const int sender = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
  sockaddr_in to{};
  to.sin_family = AF_INET;
  to.sin_port = htons(8888);
  inet_pton(AF_INET, "127.255.255.4", &to.sin_addr);
  const std::string datagram(1000, 'x');
  for (int i = 0; i < 2000; ++i) {
    sendto(sender, datagram.data(), datagram.size(), 0, reinterpret_cast<const sockaddr*>(&to), sizeof to);
  }
  close(sender);
  while (daemon->take()) {
  }
  return daemon;
}

Kept firstOfAll() {
  Database().nextId("0");
  return nullptr;
}

// As the library reads it: 17.
Kept oddNextId() {
  Database().nextId(" 17x").put(Device(3, "Siren").type("Siren").zwave(5));
  return nullptr;
}

// The node number with which a radio says that it failed.
Kept nodeOfFailure() {
  Database().nextId("4").put(Device(3, "Siren").type("Siren").zwave(255));
  return nullptr;
}

Kept noDatabase() {
  std::filesystem::remove(kDatabase);
  return nullptr;
}

// Owned by neither this user nor the folder's owner, whom the kernel lets through.
Kept othersFile() {
  Database().create();
  writeFile("/tmp/protected-regular", "2\n");
  EXPECT_EQ(mount("/tmp/protected-regular", "/proc/sys/fs/protected_regular", nullptr, MS_BIND, nullptr), 0);
  EXPECT_EQ(chmod("/tmp", 01777), 0);
  if (chown(kDatabase, 12345, 12345) == 0) return nullptr;
  EXPECT_EQ(mount("/etc/passwd", kDatabase, nullptr, MS_BIND, nullptr), 0);
  return nullptr;
}

Kept ipv4AsWell() {
  Database().create();
  return std::make_shared<EveryAddress>(false);
}

const Judged kJudged[] = {
    {"PortTakenOnBoth", ipv4AsWell, "port", "finding", "0.0.0.0:8888 belongs to doctor-test", {}, {}, 1, {"none"}},
    {"ProtectedFromThisUser",
     othersFile,
     "database-protection",
     "note",
     "which the kernel keeps from",
     {},
     {},
     1,
     {"none"}},
    {"NothingToTellTheTimeBy", noDatabase, "clock", "note", "cannot be told without a device database", {}, {}, 1},
    {"FloodedOnce", floodedOnce, "lost-datagrams", "note", "to 127.255.255.4:8888 (drops", {}, {}, 1},
    {"NoNetworkSettings", noSettings, "route-localnet", "note", "/proc/sys/net/ipv4/conf: No such file or directory."},
    {"NoMeshId",
     nothing,
     "nvram",
     "note",
     "counts as 0. nvram_get 2860 MeshSlaveID: nothing, exit status 1.",
     {},
     {{"TEMBRA_NVRAM", "/tmp/none"}}},
    {"NegativeMeshId", negativeMeshId, "nvram", "well", "is -12345678.", {}, {{"TEMBRA_NVRAM", "/tmp/negative"}}},
    {"SilentFrontEnd", silentFrontEnd, "connection", "note",
     " has 127.255.255.4:8888; /tmp/front-ends/socket: No such"},
    {"FirstNextId", firstOfAll, "database-next-id", "well", "The next id is 0."},
    {"OddNextId", oddNextId, "database-next-id", "well", "The next id is  17x."},
    {"NodeOfFailure", nodeOfFailure, "database-radios", "finding", "no address that can leave", {}, {}, 1},
    {"LockedRecords", lockedRecords, "database-ids", "note", "/tmp/ddb: it stays locked.", {}, {}, 1},
    {"PortTakenOnIpv6", ipv6Only, "port", "well", "127.255.255.4:8888 is free for a front end."},
};

class Verdicts : public testing::TestWithParam<Judged> {};

TEST_P(Verdicts, AreTold) {
  const Judged& row = GetParam();
  std::unique_ptr<SimRouter> router;
  if (row.simulator != std::vector<std::string>{"none"}) router = std::make_unique<SimRouter>(row.simulator);
  const Kept kept = row.make();
  const kit::Ended doctor = doctorOf(row.arguments, row.settings);
  EXPECT_EQ(doctor.status, row.exitStatus) << doctor.output;
  bool isTold = false;
  for (const nlohmann::json& check : checksOf(doctor)) {
    if (check.value("id", "") != row.id) continue;
    isTold = true;
    EXPECT_EQ(check.at("status"), row.status) << check;
    EXPECT_NE(textOf(check).find(row.holds), std::string::npos) << check;
  }
  EXPECT_TRUE(isTold) << doctor.output;
}

INSTANTIATE_TEST_SUITE_P(Doctor, Verdicts, testing::ValuesIn(kJudged),
                         [](const auto& test) { return test.param.name; });

}  // namespace
}  // namespace tembra::test
