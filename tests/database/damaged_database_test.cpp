// Every kind of damage before every reader of the device database.
#include <gtest/gtest.h>

#include <string>

#include "database/damages.h"
#include "kit/router.h"
#include "peak_memory.h"
#include "readers.h"

using damages::Course;
using damages::Damage;
using kit::lines;
using kit::Router;

namespace {

constexpr std::uintmax_t kMostGrowth = 1 << 16;

std::string traceOf(Course course) {
  std::string opened = lines({"dpopen /tmp/ddb 6 -1", "dpclose"});
  const std::string broken = lines({"dpopen /tmp/ddb 6 -1 -> failed", "stderr dpopen: broken database file"});
  const std::string again = lines({"dpopen /tmp/ddb 70 1", "dpclose"});
  switch (course) {
    case Course::kOpened:
      return opened;
    case Course::kEndedEarly:
      return lines({"dpopen /tmp/ddb 6 -1", "dpclose -> failed", "stderr dpclose: with fatal error"});
    case Course::kRefused:
      return opened + lines({"stderr dpopen: broken database file", "dprepair /tmp/ddb"}) + again;
    case Course::kRefusedInPart:
      return opened + lines({"stderr dpopen: broken database file", "dprepair /tmp/ddb -> failed"}) + again;
    case Course::kNotMapped:
      return lines({"dpopen /tmp/ddb 6 -1 -> failed", "stderr dpopen: memory mapping error", "dprepair /tmp/ddb"}) +
             again;
    case Course::kRepaired:
      return broken + lines({"dprepair /tmp/ddb"}) + again;
    case Course::kSavedInPart:
      return broken + lines({"dprepair /tmp/ddb -> failed"}) + again;
    case Course::kGivenUp:
      return broken + lines({"dprepair /tmp/ddb -> failed", "dpopen /tmp/ddb 70 1 -> failed"});
    case Course::kHopeless:
      return broken + lines({"dpopen /tmp/ddb 70 1 -> failed"});
  }
  return "";
}

bool keepsTheFile(Course course) { return course != Course::kGivenUp && course != Course::kHopeless; }

// The reader finds what is left, and twice the same.
void expectDamage(Router& router, const house::Reader& reader, const Damage& damage) {
  depot::Words words(router.database().file());
  const std::uintmax_t size = words.file().size();
  damage.cause(words);
  router.database().replaceWith(words.file());
  const Course course = reader.looksAtOneKey ? damage.ofNextId : damage.course;
  router.forget();
  reader.readNothing(router);
  EXPECT_EQ(router.takeTrace(), traceOf(course));
  EXPECT_EQ(router.database().exists(), keepsTheFile(course));
  EXPECT_EQ(reader.count(router), reader.expected(damage.devices, damage.restIsKept));
  EXPECT_LT(router.database().file().size(), size + kMostGrowth);
}

class DamagedDatabase : public testing::TestWithParam<Damage> {};

INSTANTIATE_TEST_SUITE_P(Is, DamagedDatabase, testing::ValuesIn(damages::kDamages),
                         [](const auto& tested) { return tested.param.name; });

}  // namespace

TEST_P(DamagedDatabase, OpenedRepairedOrDeletedForEveryReader) {
  Router router;
  router.connect();
  router.watch(kit::kWatchDatabase);
  const PeakMemory peak;
  for (const house::Reader& reader : house::kReaders) {
    SCOPED_TRACE(reader.name);
    router.database().remove();
    house::fillInOrder(router.database());
    expectDamage(router, reader, GetParam());
  }
  peak.expectFlat();
}
