// The damage that the Depot library itself does not survive: such a file counts as one that does not open. Any other
// goes its own way.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <tembra/globals.h>

#include <limits>
#include <string>

#include "database/depot_words.h"
#include "house.h"

using depot::Words;
using kit::lines;
using kit::Router;

namespace {

constexpr int kMost = std::numeric_limits<int>::max();
constexpr int kDeleted = 1;
constexpr std::size_t kOne = 50, kOther = 70;  // two records that hold devices

struct DamagedFile {
  const char* name;
  void (*damage)(Words&);
  friend std::ostream& operator<<(std::ostream& stream, const DamagedFile& file) { return stream << file.name; }
};

void damageHouse(Router& router, const DamagedFile& damaged) {
  house::fill(router.database());
  Words words(router.database().file());
  damaged.damage(words);
  router.database().replaceWith(words.file());
  router.watch(kit::kWatchDatabase);
}

// Gives a record sizes whose sum, computed as int, leads so many bytes forward or back.
void leadBy(Words& words, std::size_t record, long long bytes) {
  constexpr long long wholeRange = 1LL << 32;
  const long long key = words.get(static_cast<std::size_t>(words.offsetOf(record)) + depot::kKeySize);
  const long long header = depot::kRecordHeader;
  words.setIn(record, depot::kValueSize, kMost);
  words.setIn(record, depot::kPadding, static_cast<int>(wholeRange + bytes - header - key - kMost));
}

void deleteRecord(Words& words, std::size_t record) { words.setIn(record, 0, kDeleted); }

int lengthOf(const Words& words, std::size_t record) { return words.offsetOf(record + 1) - words.offsetOf(record); }

// The file is looked for a node in vain, and is gone then.
void expectDeletion(Router& router, const std::string& trace) {
  EXPECT_EQ(house::findNode(router, 99), 0);
  EXPECT_EQ(router.takeTrace(), trace);
  EXPECT_FALSE(router.database().exists());
}

class UnsafeFileTest : public testing::TestWithParam<DamagedFile> {};

INSTANTIATE_TEST_SUITE_P(
    Of, UnsafeFileTest,
    testing::Values(
        DamagedFile{"MoreBucketsThanBytes", [](Words& words) { words.set(depot::kBuckets, (1 << 30) - 1); }},
        DamagedFile{"BucketsWhoseEndWrapsAround", [](Words& words) { words.set(depot::kBuckets, (1 << 30) + 100); }},
        DamagedFile{"ALinkToItself", [](Words& words) { words.setIn(kOne, depot::kLeft, words.offsetOf(kOne)); }},
        DamagedFile{"ARightLinkToItself", [](Words& words) { words.setIn(kOne, depot::kRight, words.offsetOf(kOne)); }},
        DamagedFile{"TwoRecordsThatLeadToEachOther",
                    [](Words& words) {
                      words.setIn(kOne, depot::kLeft, words.offsetOf(kOther));
                      words.setIn(kOther, depot::kRight, words.offsetOf(kOne));
                    }},
        DamagedFile{"AValueThatEndsBeyondAnyOffset", [](Words& words) { words.setIn(kOne, depot::kValueSize, kMost); }},
        DamagedFile{"APaddingThatEndsBeyondAnyOffset",
                    [](Words& words) { words.setIn(kOne, depot::kPadding, kMost - 28); }},
        DamagedFile{"ARecordThatLeadsBack",
                    [](Words& words) { leadBy(words, kOther, words.offsetOf(kOne) - words.offsetOf(kOther)); }},
        DamagedFile{"ADeletedRecordThatLeadsBack",
                    [](Words& words) {
                      leadBy(words, kOther, words.offsetOf(kOne) - words.offsetOf(kOther));
                      deleteRecord(words, kOther);
                    }}),
    [](const auto& tested) { return tested.param.name; });

class OrdinaryDamageTest : public testing::TestWithParam<DamagedFile> {};

INSTANTIATE_TEST_SUITE_P(
    Of, OrdinaryDamageTest,
    testing::Values(DamagedFile{"Nothing", [](Words&) {}},
                    DamagedFile{"OneBucket", [](Words& words) { words.set(depot::kBuckets, 1); }},
                    DamagedFile{"OneBucketTooMany",
                                [](Words& words) { words.set(depot::kBuckets, words.get(depot::kBuckets) + 1); }},
                    DamagedFile{"ALinkBehindTheEnd", [](Words& words) { words.setIn(kOne, depot::kLeft, kMost); }},
                    DamagedFile{"ALinkIntoAValue",
                                [](Words& words) { words.setIn(kOne, depot::kLeft, words.offsetOf(kOther) + 100); }},
                    DamagedFile{"TwoLinksToOneRecord",
                                [](Words& words) {
                                  words.setIn(kOne, depot::kLeft, words.offsetOf(kOther));
                                  words.setIn(kOne, depot::kRight, words.offsetOf(kOther));
                                }},
                    DamagedFile{"TwoLinksToOneHeader",
                                [](Words& words) {
                                  words.setIn(kOne, depot::kLeft, words.offsetOf(kOther) + 4);
                                  words.setIn(kOne, depot::kRight, words.offsetOf(kOther) + 8);
                                }},
                    DamagedFile{"ARecordWhoseLengthWrapsAroundToTheRightOne",
                                [](Words& words) { leadBy(words, kOne, lengthOf(words, kOne)); }},
                    DamagedFile{"ADeletedRecordWhoseLengthWrapsAroundToTheRightOne",
                                [](Words& words) {
                                  leadBy(words, kOne, lengthOf(words, kOne));
                                  deleteRecord(words, kOne);
                                }},
                    DamagedFile{"ADeletedRecordThatLeadsInFrontOfTheFile",
                                [](Words& words) {
                                  words.setIn(kOne, depot::kValueSize, kMost);
                                  deleteRecord(words, kOne);
                                }},
                    DamagedFile{"ANegativeLink", [](Words& words) { words.setIn(kOne, depot::kLeft, -1); }},
                    DamagedFile{"ANegativeSize", [](Words& words) { words.setIn(kOne, depot::kValueSize, -600); }},
                    DamagedFile{"AValueBehindTheEnd",
                                [](Words& words) { words.setIn(kOne, depot::kValueSize, 1 << 30); }},
                    DamagedFile{"AKeyBehindTheEnd", [](Words& words) { words.setIn(kOne, depot::kKeySize, kMost); }},
                    DamagedFile{"NoRecords", [](Words& words) { words.set(depot::kRecords, 0); }},
                    DamagedFile{"MoreRecordsThanBytes", [](Words& words) { words.set(depot::kRecords, 1 << 26); }}),
    [](const auto& tested) { return tested.param.name; });

}  // namespace

TEST_P(UnsafeFileTest, CountsAsOneThatDoesNotOpen) {
  Router router;
  damageHouse(router, GetParam());
  house::findNode(router, 99);
  const std::string trace = router.takeTrace();
  const std::string refused = "stderr dpopen: broken database file\ndprepair /tmp/ddb";
  const std::string again = "dpopen /tmp/ddb 70 1\ndpclose";
  EXPECT_EQ(trace.find("dpopen /tmp/ddb 6 -1\ndpclose"), 0U) << trace;
  EXPECT_NE(trace.find(refused), std::string::npos) << trace;
  EXPECT_NE(trace.find(again), std::string::npos) << trace;
  EXPECT_TRUE(router.database().exists());
}

TEST_P(UnsafeFileTest, IsSafeOnceItIsRepaired) {
  Router router;
  damageHouse(router, GetParam());
  house::findNode(router, 99);
  router.forget();
  house::findNode(router, 99);
  EXPECT_EQ(router.takeTrace(), lines({"dpopen /tmp/ddb 6 -1", "dpclose"}));
}

TEST_P(OrdinaryDamageTest, IsLeftToTheDepotLibrary) {
  Router router;
  damageHouse(router, GetParam());
  house::findNode(router, 99);
  const std::string trace = router.takeTrace();
  EXPECT_EQ(trace.find("dprepair"), std::string::npos) << trace;
  EXPECT_EQ(trace.find("dpopen /tmp/ddb 6 -1\ndpclose"), 0U) << trace;
}

// A number of buckets whose end lies behind any map makes opening fail for want of memory: that is the file's own
// doing.
TEST(AFileOfTooManyBuckets, IsRepaired) {
  Router router;
  router.watch(kit::kWatchDatabase);
  for (const int buckets : {0x20000000, 0x30000000, 0x3fffff00}) {
    SCOPED_TRACE(buckets);
    router.database().remove();
    house::fill(router.database());
    Words words(router.database().file());
    words.set(depot::kBuckets, buckets);
    router.database().replaceWith(words.file());
    house::findNode(router, 99);
    router.forget();
    house::findNode(router, 99);
    EXPECT_EQ(router.takeTrace(), lines({"dpopen /tmp/ddb 6 -1", "dpclose"}));
  }
}

// Its opening fails for want of memory both times, and its repair would make it write without end.
TEST(AFileOfTooManyBuckets, IsDeletedWhenItCannotBeRepaired) {
  Router router;
  damageHouse(router, {"", [](Words& words) {
                         words.set(depot::kBuckets, 0x20000000);
                         words.set(depot::kRecords, 1 << 26);
                       }});
  expectDeletion(router, lines({"dpopen /tmp/ddb 6 -1 -> failed", "stderr dpopen: memory mapping error",
                                "dpopen /tmp/ddb 70 1 -> failed"}));
}

// Neither of these comes back from the repair: one makes it write without end, the others keep it where it is.
TEST(UnrepairableFile, IsNotRepaired) {
  const DamagedFile files[] = {
      {"MoreRecordsThanBytes", [](Words& words) { words.set(depot::kRecords, 1 << 26); }},
      {"ARecordOfNoLength",
       [](Words& words) {
         const int content = words.get(static_cast<std::size_t>(words.offsetOf(kOne)) + depot::kKeySize) +
                             words.get(static_cast<std::size_t>(words.offsetOf(kOne)) + depot::kPadding);
         words.setIn(kOne, depot::kValueSize, -static_cast<int>(depot::kRecordHeader) - content);
       }},
      {"ARecordOfNoLengthWhereTheEndOfTheBucketsWrapsAround",
       [](Words& words) {
         words.set(depot::kBuckets, 1 << 30);
         for (std::size_t word = 0; word < depot::kRecordHeader; word += sizeof(int)) {
           words.set(depot::kFirstBucket + word, 0);
         }
         words.set(depot::kFirstBucket + depot::kKeySize, -static_cast<int>(depot::kRecordHeader));
       }},
  };
  Router router;
  for (const DamagedFile& file : files) {
    SCOPED_TRACE(file.name);
    router.database().remove();
    damageHouse(router, file);
    kit::Bytes longer = router.database().file();
    longer.push_back(0);
    router.database().replaceWith(longer);
    expectDeletion(router, lines({"dpopen /tmp/ddb 6 -1 -> failed", "stderr dpopen: broken database file",
                                  "dpopen /tmp/ddb 70 1 -> failed"}));
  }
}

// The walk would stay at it for ever, and so would the repair.
TEST(ADeletedRecordOfNoLength, CostsTheFile) {
  Router router;
  damageHouse(router, {"", [](Words& words) {
                         leadBy(words, kOne, 0);
                         deleteRecord(words, kOne);
                       }});
  expectDeletion(router, lines({"dpopen /tmp/ddb 6 -1", "dpclose", "stderr dpopen: broken database file",
                                "dpopen /tmp/ddb 70 1", "dpclose"}));
}

// Opening it for reading would wait for somebody who writes.
TEST(APipeInPlaceOfTheFile, IsDeletedWithoutAWait) {
  Router router;
  router.watch(kit::kWatchDatabase);
  ASSERT_EQ(mkfifo(DBName, S_IRUSR | S_IWUSR), 0);
  expectDeletion(router, lines({"dpopen /tmp/ddb 6 -1 -> failed", "stderr dpopen: stat error",
                                "dprepair /tmp/ddb -> failed", "dpopen /tmp/ddb 70 1 -> failed"}));
}
