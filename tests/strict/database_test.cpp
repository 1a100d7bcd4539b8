// Files of others in the database's place: without strict mode they are read, or repaired, or deleted.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <tembra/globals.h>
#include <tembra/service.h>

#include <cerrno>
#include <filesystem>
#include <iterator>

#include "database/file_status.h"
#include "database/house.h"

using kit::Bytes;
using kit::lines;
using kit::Router;

namespace {

namespace fs = std::filesystem;

constexpr char kElsewhere[] = "/tmp/elsewhere";

void linkElsewhere() {
  fs::rename(DBName, kElsewhere);
  fs::create_symlink(kElsewhere, DBName);
}

const struct Place {
  const char* name;
  void (*take)(kit::Database&);
  int devices = house::kDevices;  // that are found without strict mode
} kPlacesOfOthers[] = {
    {"AnotherUsersFile", [](kit::Database&) { status::giveAway(DBName); }},
    {"AFileForTheGroupToWrite", [](kit::Database&) { chmod(DBName, 0664); }},
    {"AFileForAllToWrite", [](kit::Database&) { chmod(DBName, 0646); }},
    {"AnotherUsersDamagedFile",
     [](kit::Database& database) {
       database.makeRepairable();
       status::giveAway(DBName);
     }},
    {"AnotherUsersHopelessFile",
     [](kit::Database& database) {
       database.makeUnopenable();
       status::giveAway(DBName);
     },
     0},
    {"AnotherUsersLink",
     [](kit::Database&) {
       linkElsewhere();
       status::giveAway(DBName);
     },
     0},
    {"ALinkToAnotherUsersFile",
     [](kit::Database&) {
       linkElsewhere();
       status::giveAway(kElsewhere);
     }},
};

class StrictDatabase : public testing::TestWithParam<int> {
 protected:
  Router router;

  void SetUp() override {
    router.assoc();
    house::fill(router.database());
    kPlacesOfOthers[GetParam()].take(router.database());
    router.watch(kit::kWatchDatabase);
    router.forget();
  }
};

}  // namespace

TEST_P(StrictDatabase, LeavesAFileOfOthersAlone) {
  tembra_set_strict(1);
  const Bytes before = router.database().file();
  EXPECT_EQ(house::findNode(router, 5), 0);
  EXPECT_EQ(router.assoc().calculateDevId(), -1);
  const std::string line =
      "stderr libTembraAssoc:strict mode: /tmp/ddb is left alone, since another user owns or may write it";
  EXPECT_EQ(router.takeTrace(), lines({line, line}));
  EXPECT_EQ(router.database().file(), before);
  EXPECT_EQ(tembra_read_devices(nullptr, sizeof(tembra_device), 0), -1);
  EXPECT_EQ(errno, EPERM);
}

TEST_P(StrictDatabase, AloneIsSoCareful) {
  tembra_set_strict(0);
  EXPECT_EQ(house::countFound(router), kPlacesOfOthers[GetParam()].devices);
}

INSTANTIATE_TEST_SUITE_P(Each, StrictDatabase, testing::Range(0, static_cast<int>(std::size(kPlacesOfOthers))),
                         [](const auto& info) { return kPlacesOfOthers[info.param].name; });

TEST(StrictDatabaseOfOnesOwn, IsRead) {
  Router router;
  tembra_set_strict(1);
  router.assoc();
  house::fill(router.database());
  EXPECT_EQ(house::countFound(router), house::kDevices);
  linkElsewhere();
  EXPECT_EQ(house::countFound(router), house::kDevices);
}

TEST(StrictDatabaseOfOnesOwn, IsRepairedDeletedAndCreated) {
  Router router;
  tembra_set_strict(1);
  router.assoc();
  house::fill(router.database());
  router.database().makeRepairable();
  EXPECT_EQ(house::countFound(router), house::kDevices);
  router.database().makeUnopenable();
  house::findNode(router, 5);
  EXPECT_FALSE(router.database().exists());
  EXPECT_EQ(router.assoc().calculateDevId(), 0);
  EXPECT_TRUE(router.database().exists());
}

// Somebody else's file comes into the place between two questions about it. The first repair begins after six.
TEST(StrictDatabaseThatIsReplaced, IsLeftAloneFromThenOn) {
  constexpr int beforeTheRepair = 6;
  Router router;
  tembra_set_strict(1);
  router.assoc();
  for (int questions = 0; questions <= beforeTheRepair; ++questions) {
    SCOPED_TRACE(questions);
    router.database().remove();
    house::fill(router.database());
    router.database().makeRepairable();
    const Bytes before = router.database().file();
    status::giveAwayAfter(DBName, questions);
    router.watch(kit::kWatchDatabase);
    router.forget();
    EXPECT_EQ(house::findNode(router, 5), 0);
    const std::string trace = router.takeTrace();
    EXPECT_NE(trace.find("strict mode: /tmp/ddb is left alone"), std::string::npos) << trace;
    EXPECT_EQ(trace.find("dprepair") != std::string::npos, questions == beforeTheRepair) << trace;
    if (questions < beforeTheRepair) {
      EXPECT_EQ(router.database().file(), before);
    }
  }
}

TEST(StrictDatabaseThatIsReplaced, IsNoList) {
  Router router;
  tembra_set_strict(1);
  router.assoc();
  house::fill(router.database());
  for (int questions = 0; questions <= 3; ++questions) {
    status::giveAwayAfter(DBName, questions);
    EXPECT_EQ(tembra_read_devices(nullptr, sizeof(tembra_device), 0), -1) << questions;
    EXPECT_EQ(errno, EPERM) << questions;
  }
}
