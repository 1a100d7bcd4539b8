// Every kind of damage, and what it comes to for whoever reads the device database. The file's records are those of the
// devices 1 to 50 in this order, and then others.
#ifndef TEMBRA_TESTS_DATABASE_DAMAGES_H
#define TEMBRA_TESTS_DATABASE_DAMAGES_H

#include <limits>
#include <ostream>

#include "database/depot_words.h"

namespace damages {

/// What becomes of the file.
enum class Course {
  kOpened,
  kEndedEarly,     // the Depot library finds the damage while it reads
  kRefused,        // it opens, but reading it would never end; it is repaired
  kRefusedInPart,  // it opens, but reading it would crash; its repair loses what the Depot library tells
  kRepaired,       // it does not open; it is repaired
  kNotMapped,      // the same for want of memory, which the file itself is to blame for
  kSavedInPart,    // the same, with a loss that the Depot library tells
  kGivenUp,        // its repair does not help; it is deleted
  kHopeless        // its repair would never end; it is deleted
};

struct Damage {
  const char* name;
  void (*cause)(depot::Words&);
  Course course;
  Course ofNextId;  // for the reader that looks at one key only
  int devices;      // that look-ups find afterwards, from the first one on
  bool restIsKept;  // what stands behind the devices can be read afterwards
  int shown;        // devices that the command line shows of a file that it tells to be damaged; -1: not tried
  friend std::ostream& operator<<(std::ostream& stream, const Damage& damage) { return stream << damage.name; }
};

constexpr int kDevices = 50;
constexpr std::size_t kOne = 19, kSecond = 30, kThird = 40;  // the records of the devices 20, 31 and 41
constexpr int kMost = std::numeric_limits<int>::max(), kHuge = 1 << 30;
constexpr int kLarge = 1 << 24;  // larger than the file; a sanitizer marks each byte that is asked for
constexpr int kDeleted = 1;

inline void lengthen(depot::Words& words) { words.file().push_back(0); }

// The way to device 20 leads into a circle. (One that no search comes into does no harm.)
inline void leadIntoACircle(depot::Words& words, const char* key) {
  words.set(words.bucketOf(key), words.offsetOf(kSecond));
  words.leadTo(kSecond, kSecond);
}

// The end of one record and the header of the next.
inline void zeroASector(depot::Words& words) {
  std::fill_n(words.file().begin() + words.offsetOf(kOne + 1) - 50, 512, 0);
}

using C = Course;
using W = depot::Words;

inline const Damage kDamages[] = {
    {"Nothing", [](W&) {}, C::kOpened, C::kOpened, 50, true, -1},

    // The whole file.
    {"OneByteLonger", lengthen, C::kRepaired, C::kRepaired, 50, true, -1},
    {"WithoutMagic", [](W& words) { words.file()[1] = 'x'; }, C::kRepaired, C::kRepaired, 50, true, -1},
    {"OneByte", [](W& words) { words.file().resize(1); }, C::kGivenUp, C::kGivenUp, 0, false, -1},
    {"Rubbish", [](W& words) { words.file().assign(5000, 'x'); }, C::kRepaired, C::kRepaired, 0, false, -1},
    {"RubbishOfZeros", [](W& words) { words.file().assign(5000, 0); }, C::kSavedInPart, C::kSavedInPart, 0, false, -1},
    {"RubbishThatClaimsAHugeNumberOfRecords", [](W& words) { words.file().assign(48, '0'); }, C::kRepaired,
     C::kRepaired, 0, false, -1},
    {"CutInItsHeader", [](W& words) { words.file().resize(24); }, C::kGivenUp, C::kGivenUp, 0, false, -1},
    {"CutInItsBuckets", [](W& words) { words.file().resize(148); }, C::kRepaired, C::kRepaired, 0, false, -1},
    {"CutInItsLastDevice",
     [](W& words) { words.file().resize(static_cast<std::size_t>(words.offsetOf(kDevices) - 100)); }, C::kSavedInPart,
     C::kSavedInPart, 49, false, -1},
    {"AZeroedSector", zeroASector, C::kOpened, C::kOpened, 20, true, 20},

    // The number of buckets.
    {"MoreBucketsThanBytes", [](W& words) { words.set(depot::kBuckets, kHuge - 1); }, C::kRefusedInPart,
     C::kRefusedInPart, 0, true, -1},
    {"BucketsWhoseEndWrapsAround", [](W& words) { words.set(depot::kBuckets, kHuge + 100); }, C::kRefusedInPart,
     C::kRefusedInPart, 0, false, -1},
    {"BucketsBehindAnyMap", [](W& words) { words.set(depot::kBuckets, 0x20000000); }, C::kNotMapped, C::kNotMapped, 0,
     false, -1},
    {"OneBucket", [](W& words) { words.set(depot::kBuckets, 1); }, C::kOpened, C::kOpened, 0, false, 0},
    {"OneBucketTooMany", [](W& words) { words.set(depot::kBuckets, words.buckets() + 1); }, C::kOpened, C::kOpened, 0,
     false, 0},
    {"NoBucketLeadsAnywhere",
     [](W& words) {
       for (int i = 0; i < words.buckets(); ++i) words.set(depot::kFirstBucket + 4 * static_cast<std::size_t>(i), 0);
     },
     C::kOpened, C::kOpened, 0, false, 50},

    // The number of records, which only a repair reads.
    {"NoRecords", [](W& words) { words.set(depot::kRecords, 0); }, C::kOpened, C::kOpened, 50, true, -1},
    {"MoreRecordsThanBytes", [](W& words) { words.set(depot::kRecords, 1 << 26); }, C::kOpened, C::kOpened, 50, true,
     -1},
    {"MoreRecordsThanBytesInARepair",
     [](W& words) {
       words.set(depot::kRecords, 1 << 26);
       lengthen(words);
     },
     C::kRepaired, C::kRepaired, 50, true, -1},
    {"MoreRecordsAndBucketsThanBytes",
     [](W& words) {
       words.set(depot::kBuckets, 0x20000000);
       words.set(depot::kRecords, 1 << 26);
     },
     C::kNotMapped, C::kNotMapped, 0, false, -1},

    // Links that form a circle.
    {"ACircleOnTheWayToADevice", [](W& words) { leadIntoACircle(words, "20"); }, C::kRefused, C::kOpened, 50, true, 50},
    {"ACircleOfTwo",
     [](W& words) {
       leadIntoACircle(words, "20");
       words.leadTo(kSecond, kThird);
       words.leadTo(kThird, kSecond);
     },
     C::kRefused, C::kOpened, 50, true, 50},
    {"ACircleOnTheWayToTheNextId", [](W& words) { leadIntoACircle(words, "NextDevid"); }, C::kRefused, C::kRefused, 50,
     true, 50},
    {"ACircleOnTheWayToADeviceBehindTheEnd",
     [](W& words) {
       leadIntoACircle(words, "42");
       words.setIn(kOne, depot::kValueSize, -1);
     },
     C::kEndedEarly, C::kOpened, 19, true, 19},
    {"ACircleOnTheWayToNobody", [](W& words) { words.leadTo(kOne, kOne); }, C::kOpened, C::kOpened, 50, true, 50},

    // Links that lead elsewhere.
    {"ALinkBehindTheEnd", [](W& words) { words.setIn(kOne, depot::kLeft, kMost); }, C::kOpened, C::kOpened, 50, true,
     50},
    {"ALinkIntoAValue", [](W& words) { words.setIn(kOne, depot::kLeft, words.offsetOf(kSecond) + 100); }, C::kOpened,
     C::kOpened, 50, true, 50},
    {"TwoLinksToOneRecord", [](W& words) { words.leadTo(kOne, kSecond); }, C::kOpened, C::kOpened, 50, true, 50},
    {"ANegativeLink", [](W& words) { words.setIn(kOne, depot::kLeft, -1); }, C::kEndedEarly, C::kOpened, 19, true, 19},

    // Sizes of a record that is met while reading.
    {"ANegativeValue", [](W& words) { words.setIn(kOne, depot::kValueSize, -1); }, C::kEndedEarly, C::kOpened, 19, true,
     19},
    {"ANegativePadding", [](W& words) { words.setIn(kOne, depot::kPadding, -kMost); }, C::kEndedEarly, C::kOpened, 19,
     true, 19},
    {"AKeyBehindTheEnd", [](W& words) { words.setIn(kOne, depot::kKeySize, kLarge); }, C::kEndedEarly, C::kOpened, 19,
     true, 19},
    {"AnEndlessKey", [](W& words) { words.setIn(kOne, depot::kKeySize, kMost); }, C::kEndedEarly, C::kOpened, 19, true,
     19},
    {"AValueBehindTheEnd", [](W& words) { words.setIn(kOne, depot::kValueSize, kHuge); }, C::kOpened, C::kOpened, 20,
     true, 20},
    {"AnEndlessValue", [](W& words) { words.setIn(kOne, depot::kValueSize, kMost); }, C::kOpened, C::kOpened, 19, true,
     20},
    {"APaddingBehindTheEnd", [](W& words) { words.setIn(kOne, depot::kPadding, kHuge); }, C::kOpened, C::kOpened, 20,
     true, 20},
    {"AnEndlessPadding", [](W& words) { words.setIn(kOne, depot::kPadding, kMost - 28); }, C::kOpened, C::kOpened, 20,
     true, 20},

    // Sizes whose sum, computed as int, leads somewhere.
    {"ARecordThatLeadsBack", [](W& words) { words.leadBy(kSecond, words.offsetOf(kOne) - words.offsetOf(kSecond)); },
     C::kOpened, C::kOpened, 30, true, 31},
    {"ADeletedRecordThatLeadsBack",
     [](W& words) {
       words.leadBy(kSecond, words.offsetOf(kOne) - words.offsetOf(kSecond));
       words.setIn(kSecond, 0, kDeleted);
     },
     C::kOpened, C::kOpened, 30, true, 30},
    {"ADeletedRecordThatLeadsInFrontOfTheFile",
     [](W& words) {
       words.setIn(kOne, depot::kValueSize, kMost);
       words.setIn(kOne, 0, kDeleted);
     },
     C::kEndedEarly, C::kOpened, 19, true, 19},
    {"ADeletedRecordOfNoLength",
     [](W& words) {
       words.leadBy(kOne, 0);
       words.setIn(kOne, 0, kDeleted);
     },
     C::kOpened, C::kOpened, 19, true, 19},

    // The same, met by the repair.
    {"AnEndlessKeyInARepair",
     [](W& words) {
       words.setIn(kOne, depot::kKeySize, kMost);
       lengthen(words);
     },
     C::kSavedInPart, C::kSavedInPart, 19, false, -1},
    {"AHugeValueInARepair",
     [](W& words) {
       words.setIn(kOne, depot::kValueSize, kMost - 100'000);
       lengthen(words);
     },
     C::kSavedInPart, C::kSavedInPart, 19, false, -1},
    {"ARecordOfNoLengthInARepair",
     [](W& words) {
       const int content = words.getIn(kOne, depot::kKeySize) + words.getIn(kOne, depot::kPadding);
       words.setIn(kOne, depot::kValueSize, -static_cast<int>(depot::kRecordHeader) - content);
       lengthen(words);
     },
     C::kHopeless, C::kHopeless, 0, false, -1},
    {"ARecordOfNoLengthWhereTheEndOfTheBucketsWrapsAround",
     [](W& words) {
       words.set(depot::kBuckets, kHuge);
       for (std::size_t word = 0; word < depot::kRecordHeader; word += 4) words.set(depot::kFirstBucket + word, 0);
       words.set(depot::kFirstBucket + depot::kKeySize, -static_cast<int>(depot::kRecordHeader));
       lengthen(words);
     },
     C::kHopeless, C::kHopeless, 0, false, -1},
};

}  // namespace damages

#endif
