// Another user of the router, who may make files in the database's folder (its sticky bit is set) and wants the front
// end to write elsewhere, to lose the device list or to wait for ever.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <tembra/globals.h>
#include <tembra/service.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <string>

#include "file_status.h"
#include "house.h"

using kit::Bytes;
using kit::lines;
using kit::Router;

namespace {

namespace fs = std::filesystem;

constexpr char kTemporary[] = "/tmp/ddb.dptmp";
constexpr char kVictim[] = "/tmp/victim";
constexpr char kSecret[] = "root:x:0:0:root:/root:/bin/sh, and more than a Depot file's header has bytes\n";

void writeVictim() { std::ofstream(kVictim) << kSecret; }

std::string victim() {
  std::ifstream file(kVictim);
  return {std::istreambuf_iterator<char>(file), {}};
}

// Keeps the temporary name locked for as long as it lives.
class Holder {
 public:
  Holder() : process_(fork()) {
    if (process_ != 0) return;
    const int file = open(kTemporary, O_RDWR | O_CREAT, 0666);
    struct flock whole = {};
    whole.l_type = F_WRLCK;
    fcntl(file, F_SETLK, &whole);
    std::ofstream("/tmp/locked") << "x";
    pause();
    _exit(0);
  }
  ~Holder() {
    kill(process_, SIGKILL);
    waitpid(process_, nullptr, 0);
  }
  Holder(const Holder&) = delete;
  Holder& operator=(const Holder&) = delete;

  static void await() {
    while (!fs::exists("/tmp/locked")) usleep(1000);
  }

 private:
  pid_t process_;
};

void fillBroken(Router& router) {
  router.database().remove();
  house::fill(router.database());
  router.database().makeRepairable();
}

struct Trap {
  const char* name;
  void (*set)();
};

const Trap kTraps[] = {
    {"a file", [] { std::ofstream(kTemporary) << "x"; }},
    {"a link to a file", [] { fs::create_symlink(kVictim, kTemporary); }},
    {"a link to nothing", [] { fs::create_symlink("/tmp/nothing", kTemporary); }},
    {"a second name of a file", [] { fs::create_hard_link(kVictim, kTemporary); }},
    {"a pipe", [] { mkfifo(kTemporary, 0666); }},
};

}  // namespace

TEST(TheRepairsTemporaryFile, IsTakenFromWhoeverHasIt) {
  Router router;
  router.assoc();
  for (const Trap& trap : kTraps) {
    SCOPED_TRACE(trap.name);
    fillBroken(router);
    writeVictim();
    trap.set();
    status::giveAway(kTemporary);
    EXPECT_EQ(house::countFound(router), house::kDevices);
    EXPECT_EQ(victim(), kSecret);
    EXPECT_FALSE(fs::exists("/tmp/nothing"));
    EXPECT_FALSE(fs::exists(fs::symlink_status(kTemporary)));
  }
}

TEST(TheRepairsTemporaryFile, LockedByAnotherIsNotWaitedFor) {
  Router router;
  router.assoc();
  fillBroken(router);
  const Holder holder;
  Holder::await();
  alarm(20);
  EXPECT_EQ(house::countFound(router), house::kDevices);
  alarm(0);
}

TEST(TheRepairsTemporaryFile, ThatCannotBeHadCostsNothing) {
  Router router;
  router.assoc();
  fillBroken(router);
  const Bytes broken = router.database().file();
  fs::create_directory(kTemporary);
  router.watch(kit::kWatchDatabase);
  router.forget();
  EXPECT_EQ(house::findNode(router, 5), 0);
  EXPECT_EQ(router.takeTrace(), lines({"dpopen /tmp/ddb 6 -1 -> failed", "stderr dpopen: broken database file",
                                       "dpopen /tmp/ddb 70 1 -> failed"}));
  EXPECT_EQ(router.database().file(), broken);
  fs::remove(kTemporary);
  EXPECT_EQ(house::countFound(router), house::kDevices);
}

TEST(ALinkInTheDatabasesPlace, OfAnotherUserIsRemovedAndNotFollowed) {
  Router router;
  router.assoc();
  router.watch(kit::kWatchDatabase);
  for (const char* target : {kVictim, "/tmp/nothing"}) {
    SCOPED_TRACE(target);
    writeVictim();
    fs::create_symlink(target, DBName);
    status::giveAway(DBName);
    EXPECT_EQ(tembra_check_database(), ELOOP);
    EXPECT_EQ(house::findNode(router, 5), 0);
    EXPECT_EQ(router.takeTrace(), lines({"stderr dpopen: open error"}));
    EXPECT_EQ(victim(), kSecret);
    EXPECT_FALSE(fs::exists("/tmp/nothing"));
    EXPECT_FALSE(fs::exists(fs::symlink_status(DBName)));
  }
}

TEST(ALinkInTheDatabasesPlace, OfThisUserIsFollowed) {
  Router router;
  router.assoc();
  house::fill(router.database());
  fs::rename(DBName, "/tmp/real");
  fs::create_symlink("/tmp/real", DBName);
  EXPECT_EQ(house::countFound(router), house::kDevices);
}

TEST(AFileInTheDatabasesPlace, WithASecondNameIsNeverRepaired) {
  Router router;
  router.assoc();
  writeVictim();
  fs::create_hard_link(kVictim, DBName);
  EXPECT_EQ(house::findNode(router, 5), 0);
  EXPECT_EQ(victim(), kSecret);
  EXPECT_FALSE(router.database().exists());
}

TEST(AFileInTheDatabasesPlace, WithoutTheDepotLibrarysMarkIsRepairedForItsOwnerOnly) {
  Router router;
  router.assoc();
  for (const bool isOurs : {true, false}) {
    SCOPED_TRACE(isOurs);
    router.database().remove();
    house::fill(router.database());
    Bytes file = router.database().file();
    file[1] = 'x';
    router.database().replaceWith(file);
    if (!isOurs) status::giveAway(DBName);
    EXPECT_EQ(house::countFound(router), isOurs ? house::kDevices : 0);
  }
}
