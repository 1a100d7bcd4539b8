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
#include <string>
#include <vector>

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
  int error;
  bool costsTheFile;
};

const FailedRepair kFailedRepairs[] = {
    {"no disk space", ENOSPC, false},    {"no more disk space for this user", EDQUOT, false},
    {"no memory", ENOMEM, false},        {"a broken disk", EIO, true},
    {"nothing but the damage", 0, true},
};

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
      EXPECT_EQ(reader.readNothing(router), reader.resultWithoutFile);
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

// The Depot library's repair cuts the file before it copies the repaired one over it. It is begun exactly where it has
// room for that.
TEST(WithoutDiskSpace, AFileIsRepairedWhereTheRepairFitsAndLeftAloneElsewhere) {
  constexpr char kDisk[] = "/tmp/s";
  Router router;
  router.assoc();
  ASSERT_EQ(mkdir(kDisk, S_IRWXU), 0);
  ASSERT_EQ(mount("tmpfs", kDisk, "tmpfs", 0, "size=4m"), 0);
  std::strcpy(DBName, "/tmp/s/d");
  house::fill(router.database());
  router.database().makeRepairable();
  const Bytes broken = router.database().file();
  int repaired = 0, leftAlone = 0;
  for (int kibibytes = 64; kibibytes <= 256; kibibytes += 4) {
    SCOPED_TRACE(kibibytes);
    router.database().remove();
    ASSERT_EQ(mount(nullptr, kDisk, nullptr, MS_REMOUNT, ("size=" + std::to_string(kibibytes) + "k").c_str()), 0);
    router.database().replaceWith(broken);
    if (router.database().file() != broken) continue;  // not even that fits
    const bool fits = dprepair(DBName) != 0;
    router.database().replaceWith(broken);
    EXPECT_EQ(house::findNode(router, 5), fits ? 1 : 0);
    EXPECT_EQ(router.database().file() == broken, !fits);
    ++(fits ? repaired : leftAlone);
    EXPECT_EQ(house::countFound(router), fits ? house::kDevices : 0);
  }
  EXPECT_GT(repaired, 10);
  EXPECT_GT(leftAlone, 10);
}

TEST(AFailedRepair, CostsTheFileUnlessItWasForWantOfSomethingElse) {
  Router router;
  router.assoc();
  for (const FailedRepair& repair : kFailedRepairs) {
    SCOPED_TRACE(repair.name);
    router.database().remove();
    house::fill(router.database());
    router.database().makeRepairable();
    kit::faults().order(kit::Call::kRepairDatabase, kit::depotError(DP_EWRITE, repair.error));
    EXPECT_EQ(house::findNode(router, 5), 0);
    EXPECT_EQ(router.database().exists(), !repair.costsTheFile);
  }
}
