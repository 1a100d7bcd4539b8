// Files that claim far more than they hold, in a record's sizes or in the number of records. What they claim is not
// what they cost: the look-up ends, and the memory and the file stay small.
#include <gtest/gtest.h>

#include <climits>
#include <string>

#include "database/depot_words.h"
#include "house.h"
#include "peak_memory.h"

using depot::Words;
using kit::Bytes;
using kit::Router;

namespace {

constexpr int kBefore = 20;  // devices in front of the record that claims too much

struct Claim {
  const char* name;
  std::size_t field;
  int size;
  bool opens;     // if not, the repair meets the record first
  int lastFound;  // device
  int left;       // records
};

// A size that ends beyond any offset, and one that does not.
constexpr int kEndless = INT_MAX, kHuge = INT_MAX - 100'000;

const Claim kClaims[] = {
    {"an endless key, met by the walk", depot::kKeySize, kEndless, true, kBefore, house::kDevices},
    {"a huge key, met by the walk", depot::kKeySize, kHuge, true, kBefore, house::kDevices},
    {"a huge value, met by the walk", depot::kValueSize, kHuge, true, kBefore + 1, house::kDevices},
    {"an endless value, repaired before a walk meets it", depot::kValueSize, kEndless, true, kBefore, kBefore},
    {"an endless key, met by the repair", depot::kKeySize, kEndless, false, kBefore, kBefore},
    {"a huge key, met by the repair", depot::kKeySize, kHuge, false, kBefore, kBefore},
    {"an endless value, met by the repair", depot::kValueSize, kEndless, false, kBefore, kBefore},
    {"a huge value, met by the repair", depot::kValueSize, kHuge, false, kBefore, kBefore},
};

/// One device behind the other, in the order of their nodes.
Bytes fillInOrder(kit::Database& database) {
  database.remove();
  for (int id = 1; id <= house::kDevices; ++id) {
    database.put(kit::Device(id, "Lamp").zwave(static_cast<unsigned>(id)));
  }
  return database.file();
}

// Of those around the record.
int lastFound(Router& router) {
  int last = 0;
  for (int node = kBefore; node <= kBefore + 2; ++node) last = house::findNode(router, node) == 1 ? node : last;
  return last;
}

void spoil(kit::Database& database, const Words& words, bool opens) {
  Bytes file = words.file();
  if (!opens) file.push_back(0);
  database.replaceWith(file);
}

struct Records {
  int number;
  bool areRepaired;
};

// Two buckets for each, of four bytes each, and no more than a megabyte of them.
constexpr Records kRecords[] = {{house::kDevices, true}, {128'768, true}, {131'072, true}, {131'073, false}};
constexpr std::size_t kMostOfBuckets = std::size_t{3} << 19;  // the Depot library rounds their number up

struct Junk {
  unsigned char byte;
  bool isRepaired;
};

// As a number of records, the first is none, the second too many, and the third turns negative when it is doubled.
constexpr Junk kJunk[] = {{0, true}, {'0', false}, {'K', true}};
constexpr std::size_t kHeader = 48;
constexpr std::size_t kMostOfAnEmptyFile = 1 << 16;

}  // namespace

TEST(ARecordThatClaimsGigabytes, EndsTheLookUpAndCostsNoMemory) {
  Router router;
  const Bytes healthy = fillInOrder(router.database());
  router.assoc();
  for (const Claim& claim : kClaims) {
    SCOPED_TRACE(claim.name);
    Words words(healthy);
    words.setIn(kBefore, claim.field, claim.size);
    spoil(router.database(), words, claim.opens);
    const PeakMemory peak;
    EXPECT_EQ(lastFound(router), claim.lastFound);
    peak.expectFlat();
    EXPECT_EQ(router.database().records(), claim.left);
    EXPECT_LE(router.database().file().size(), healthy.size());
  }
}

TEST(AFileThatClaimsAMegabyteOfRecords, IsRepairedAndNoneThatClaimsMore) {
  Router router;
  const Bytes healthy = fillInOrder(router.database());
  router.assoc();
  for (const Records& records : kRecords) {
    SCOPED_TRACE(records.number);
    Words words(healthy);
    words.set(depot::kRecords, records.number);
    spoil(router.database(), words, false);
    const PeakMemory peak;
    EXPECT_EQ(house::countFound(router), records.areRepaired ? house::kDevices : 0);
    peak.expectFlat();
    EXPECT_LT(router.database().file().size(), healthy.size() + kMostOfBuckets);
  }
}

TEST(AFileOfOneByteAgainAndAgain, BecomesASmallDatabaseOrNone) {
  Router router;
  router.assoc();
  for (const Junk& junk : kJunk) {
    for (const std::size_t length : {kHeader - 1, kHeader, kHeader + 28, kHeader + 252}) {
      SCOPED_TRACE(std::to_string(length) + " bytes of " + std::to_string(junk.byte));
      router.database().remove();
      router.database().replaceWith(Bytes(length, junk.byte));
      const PeakMemory peak;
      EXPECT_EQ(house::findNode(router, 5), 0);
      peak.expectFlat();
      EXPECT_EQ(router.database().exists(), junk.isRepaired && length >= kHeader);
      EXPECT_LT(router.database().file().size(), kMostOfAnEmptyFile);
    }
  }
}
