// A process that has no descriptor left, or a router without memory or disk space, must not lose the device list of the
// house.
#include <depot.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <tembra/globals.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <vector>

#include "database/depot_words.h"
#include "house.h"
#include "kit/faults.h"
#include "readers.h"

using kit::Bytes;
using kit::lines;
using kit::Router;

namespace {

/// Every descriptor of the process but so many is in use, as long as it lives.
class Exhausted {
 public:
  explicit Exhausted(int left) {
    getrlimit(RLIMIT_NOFILE, &before_);
    const rlimit few{64, before_.rlim_max};
    setrlimit(RLIMIT_NOFILE, &few);
    for (int used = open("/dev/null", O_RDONLY); used >= 0; used = open("/dev/null", O_RDONLY)) used_.push_back(used);
    for (; left > 0; --left) {
      close(used_.back());
      used_.pop_back();
    }
  }
  ~Exhausted() {
    for (const int used : used_) close(used);
    setrlimit(RLIMIT_NOFILE, &before_);
  }
  Exhausted(const Exhausted&) = delete;
  Exhausted& operator=(const Exhausted&) = delete;

 private:
  rlimit before_{};
  std::vector<int> used_;
};

struct FailedRepair {
  const char* name;
  int valueSize;  // that one record claims
  int error;
  bool costsTheFile;
};

constexpr std::size_t kRecord = 50;
constexpr int kTrue = 512, kBeyondTheFile = 1 << 30;

const FailedRepair kFailedRepairs[] = {
    {"no disk space", kTrue, ENOSPC, false},
    {"no more disk space for this user", kTrue, EDQUOT, false},
    {"no memory", kTrue, ENOMEM, false},
    {"no memory for what the file itself asks for", kBeyondTheFile, ENOMEM, true},
    {"a broken disk", kTrue, EIO, true},
    {"nothing but the damage", kTrue, 0, true},
};

/// One byte too many, so that the file does not open.
void damage(kit::Database& database, int valueSize) {
  depot::Words words(database.file());
  words.setIn(kRecord, depot::kValueSize, valueSize);
  kit::Bytes content = words.file();
  content.push_back(0);
  database.replaceWith(content);
}

}  // namespace

TEST(WithoutADescriptor, TheDeviceListIsNeitherRepairedNorDeleted) {
  Router router;
  house::fill(router.database());
  const Bytes healthy = router.database().file();
  router.assoc();
  router.forget();
  router.watch(kit::kWatchDatabase);
  for (const house::Reader& reader : house::kReaders) {
    SCOPED_TRACE(reader.name);
    {
      const Exhausted exhausted(0);
      EXPECT_EQ(reader.read(router.assoc()), reader.resultWithoutFile);
    }
    EXPECT_EQ(router.takeTrace(), lines({"dpopen /tmp/ddb 6 -1 -> failed", "stderr dpopen: open error"}));
    EXPECT_EQ(router.database().file(), healthy);
    router.forget();
  }
  EXPECT_EQ(house::countFound(router), house::kDevices);
}

// The first open finds the file broken, and then there is no descriptor for the second.
TEST(WithoutADescriptor, ABrokenFileIsNotDeletedEither) {
  Router router;
  house::fill(router.database());
  router.database().makeRepairable();
  router.assoc();
  {
    const Exhausted exhausted(1);
    EXPECT_EQ(house::findNode(router, 5), 0);
  }
  EXPECT_TRUE(router.database().exists());
  EXPECT_EQ(house::countFound(router), house::kDevices);
}

TEST(WithOneDescriptor, TheDatabaseIsRead) {
  Router router;
  house::fill(router.database());
  router.assoc();
  const Exhausted exhausted(1);
  EXPECT_EQ(house::findNode(router, 5), 1);
}

// Depot's repair cuts the file before it copies the repaired one over it.
TEST(WithoutDiskSpace, ABrokenFileIsNotRepaired) {
  constexpr char kDisk[] = "/tmp/s";
  Router router;
  router.assoc();
  ASSERT_EQ(mkdir(kDisk, S_IRWXU), 0);
  ASSERT_EQ(mount("tmpfs", kDisk, "tmpfs", 0, "size=4m"), 0);
  std::strcpy(DBName, "/tmp/s/d");
  for (const char* size : {"size=96k", "size=128k", "size=160k", "size=200k"}) {
    SCOPED_TRACE(size);
    house::fill(router.database());
    router.database().makeRepairable();
    const Bytes broken = router.database().file();
    ASSERT_EQ(mount(nullptr, kDisk, nullptr, MS_REMOUNT, size), 0);
    EXPECT_EQ(house::findNode(router, 5), 0);
    EXPECT_EQ(router.database().file(), broken);
    ASSERT_EQ(mount(nullptr, kDisk, nullptr, MS_REMOUNT, "size=4m"), 0);
    EXPECT_EQ(house::countFound(router), house::kDevices);
    router.database().remove();
  }
}

TEST(AFailedRepair, CostsTheFileUnlessItWasForWantOfSomethingElse) {
  Router router;
  router.assoc();
  for (const FailedRepair& repair : kFailedRepairs) {
    SCOPED_TRACE(repair.name);
    router.database().remove();
    house::fill(router.database());
    damage(router.database(), repair.valueSize);
    kit::faults().order(kit::Call::RepairDatabase, kit::depotError(DP_EWRITE, repair.error));
    EXPECT_EQ(house::findNode(router, 5), 0);
    EXPECT_EQ(router.database().exists(), !repair.costsTheFile);
  }
}
