// The next id is one value: of a damaged file, what its search comes across decides whether it is read.
#include <depot.h>
#include <gtest/gtest.h>
#include <tembra/globals.h>

#include <string>

#include "database/depot_words.h"
#include "house.h"

using depot::Words;
using kit::lines;
using kit::Router;

namespace {

constexpr int kNextId = 77;  // of the house
constexpr std::size_t kItsRecord = 0, kAnother = 50;
constexpr char kNothingWrong[] = "dpopen /tmp/ddb 6 -1\ndpclose\n";
constexpr char kRepaired[] =
    "dpopen /tmp/ddb 6 -1\ndpclose\nstderr dpopen: broken database file\ndprepair /tmp/ddb\ndpopen /tmp/ddb 70 "
    "1\ndpclose\n";

struct LinkToItself {
  const char* name;
  std::size_t record;
  const char* trace;
};

/// A database whose only bucket holds so many records beside the next id.
void fillOneBucket(Router& router, int records) {
  router.database().remove();
  DEPOT* file = dpopen(DBName, DP_OWRITER | DP_OCREAT, 1);
  ASSERT_NE(file, nullptr);
  const std::string id = std::to_string(kNextId);
  dpput(file, "NextDevid", -1, id.c_str(), -1, DP_DOVER);
  for (int i = 0; i < records; ++i) dpput(file, std::to_string(i).c_str(), -1, "x", -1, DP_DOVER);
  ASSERT_NE(dpclose(file), 0);
}

}  // namespace

TEST(NextId, IsReadUnlessItsOwnSearchWouldNeverEnd) {
  const LinkToItself links[] = {{"its own", kItsRecord, kRepaired}, {"another bucket's", kAnother, kNothingWrong}};
  Router router;
  for (const LinkToItself& link : links) {
    SCOPED_TRACE(link.name);
    router.database().remove();
    house::fill(router.database());
    Words words(router.database().file());
    words.setIn(link.record, depot::kLeft, words.offsetOf(link.record));
    router.database().replaceWith(words.file());
    router.assoc();
    router.forget();
    router.watch(kit::kWatchDatabase);
    EXPECT_EQ(router.assoc().calculateDevId(), kNextId);
    EXPECT_EQ(router.takeTrace(), link.trace);
  }
}

// Few records are looked at without memory, many with.
TEST(NextId, IsFoundInABucketOfAnySize) {
  Router router;
  for (const int records : {0, 1, 254, 255, 256, 1000}) {
    SCOPED_TRACE(records);
    fillOneBucket(router, records);
    router.assoc();
    router.forget();
    router.watch(kit::kWatchDatabase);
    EXPECT_EQ(router.assoc().calculateDevId(), kNextId);
    EXPECT_EQ(router.takeTrace(), kNothingWrong);
  }
}

TEST(NextId, IsNotSearchedInALargeBucketWhoseLinksRunInACircle) {
  Router router;
  fillOneBucket(router, 1000);
  Words words(router.database().file());
  words.setIn(words.records() - 1, depot::kLeft, words.offsetOf(kItsRecord));
  router.database().replaceWith(words.file());
  router.assoc();
  router.forget();
  router.watch(kit::kWatchDatabase);
  EXPECT_EQ(router.assoc().calculateDevId(), kNextId);
  EXPECT_EQ(router.takeTrace(), kRepaired);
}
