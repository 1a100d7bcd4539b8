// The attacks that take a process of another user. The kernel's fs.protected_* are as the machine has them: they belong
// to the whole machine, so no test may set them.
#include <arpa/inet.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <tembra/globals.h>
#include <tembra/service.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>

#include "database/file_status.h"
#include "database/house.h"
#include "second_user.h"

using kit::Router;

namespace {

namespace fs = std::filesystem;

constexpr char kTemporary[] = "/tmp/ddb.dptmp";
constexpr char kStolen[] = "/tmp/stolen";
constexpr char kVictim[] = "/tmp/victim";
constexpr char kSecret[] = "a file that only its owner writes, longer than the header of a database's file";

void writeVictim() {
  std::ofstream(kVictim) << kSecret;
  chmod(kVictim, S_IRUSR | S_IWUSR);
}

bool isVictimAsItWas() {
  std::ifstream file(kVictim);
  return std::string(std::istreambuf_iterator<char>(file), {}) == kSecret;
}

// Takes the name of the repair's temporary file away where the folder lets it, and sets a trap there.
void raceForTheTemporaryName() {
  static_cast<void>(rename(kTemporary, kStolen));
  unlink(kTemporary);
  static_cast<void>(symlink(kVictim, kTemporary));
}

void breakRepairably(Router& router) {
  router.database().remove();
  house::fill(router.database());
  router.database().makeRepairable();
}

bool canBind(const char* address, int port, int option) {
  const int descriptor = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
  const int on = 1;
  if (option != 0) setsockopt(descriptor, SOL_SOCKET, option, &on, sizeof on);
  sockaddr_in name{};
  name.sin_family = AF_INET;
  name.sin_port = htons(static_cast<in_port_t>(port));
  inet_pton(AF_INET, address, &name.sin_addr);
  const bool isBound = bind(descriptor, reinterpret_cast<const sockaddr*>(&name), sizeof name) == 0;
  close(descriptor);
  return isBound;
}

}  // namespace

// Each repair ends in one of two ways: it is done, or the name was not to be had and the file is as it was.
TEST(ASecondUser, WhoRacesForTheTemporaryNameGainsNothing) {
  constexpr int rounds = 300;
  Router router;
  router.assoc();
  writeVictim();
  {
    const SecondUser attacker(&raceForTheTemporaryName);
    // With the test's own user the attacker may do whatever the front end may.
    for (int round = 0; attacker.isAnother() && round < rounds; ++round) {
      breakRepairably(router);
      const kit::Bytes broken = router.database().file();
      const bool isFound = house::findNode(router, 5) != 0;
      ASSERT_TRUE(isFound || router.database().file() == broken);
      ASSERT_TRUE(isVictimAsItWas());
    }
  }
  fs::remove(kTemporary);
  breakRepairably(router);
  EXPECT_EQ(house::countFound(router), house::kDevices);
  EXPECT_TRUE(isVictimAsItWas());
  EXPECT_FALSE(fs::exists(fs::symlink_status(kTemporary)));
}

TEST(ASecondUser, CannotTakeTheTemporaryNameAway) {
  struct stat folder = {};
  ASSERT_EQ(stat("/tmp", &folder), 0);
  ASSERT_TRUE((folder.st_mode & S_ISVTX) != 0) << "the tests' own /tmp is like the machine's";
  std::ofstream(kTemporary) << "x";
  const SecondUser attacker([] {});
  const bool isTaken = SecondUser::once([] { return rename(kTemporary, kStolen) == 0 || unlink(kTemporary) == 0; });
  EXPECT_EQ(isTaken, !attacker.isAnother());
}

// The Depot library maps the file: one that shrinks under the map would end the program.
TEST(ASecondUser, WhoShrinksItsDatabaseEndsNoFrontEndInStrictMode) {
  constexpr int lookUps = 2000;
  Router router;
  router.assoc();
  house::fill(router.database());
  status::giveAway(DBName);
  tembra_set_strict(1);
  const SecondUser attacker([] {
    static_cast<void>(truncate(DBName, 0));
    static_cast<void>(truncate(DBName, 100'000));
  });
  for (int i = 0; i < lookUps; ++i) ASSERT_EQ(house::findNode(router, 5), 0);
  EXPECT_TRUE(router.database().exists());
}

TEST(ASecondUser, CannotBindThePortOfADaemonThatRuns) {
  const Router router;  // with its daemons
  EXPECT_TRUE(SecondUser::once([] { return canBind("127.255.255.254", 6666, 0); })) << "another port is to be had";
  for (const int option : {0, SO_REUSEADDR, SO_REUSEPORT}) {
    for (const char* address : {"127.255.255.254", "0.0.0.0"}) {
      EXPECT_FALSE(SecondUser::once([&] { return canBind(address, 8888, option); })) << address << " " << option;
    }
  }
}
