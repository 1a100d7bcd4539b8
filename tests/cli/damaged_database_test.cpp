// A device database that is damaged somewhere: the devices that can be read are shown, and nobody is told that they are
// all.
#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <ostream>

#include "database/depot_words.h"
#include "support/database.h"
#include "support/program.h"
#include "support/sim_router.h"

namespace tembra::test {
namespace {

using depot::Words;

constexpr int kMost = std::numeric_limits<int>::max();
constexpr int kHuge = 1 << 30;
constexpr std::size_t kOne = 19, kOther = 30;  // the records of the devices 20 and 31

struct Damage {
  const char* name;
  void (*damage)(Words&);
  int devicesShown;  // those before the damage
};

void PrintTo(const Damage& row, std::ostream* out) { *out << row.name; }

const Damage kDamages[] = {
    {"APaddingBehindTheEnd", [](Words& words) { words.setIn(kOne, depot::kPadding, kHuge); }, 20},
    {"APaddingBehindAnyOffset", [](Words& words) { words.setIn(kOne, depot::kPadding, kMost); }, 20},
    {"AValueBehindTheEnd", [](Words& words) { words.setIn(kOne, depot::kValueSize, kHuge); }, 20},
    {"AValueBehindAnyOffset", [](Words& words) { words.setIn(kOne, depot::kValueSize, kMost); }, 20},
    {"AKeyBehindTheEnd", [](Words& words) { words.setIn(kOne, depot::kKeySize, kHuge); }, 19},
    {"ANegativeValue", [](Words& words) { words.setIn(kOne, depot::kValueSize, -1); }, 19},
    {"ANegativePadding", [](Words& words) { words.setIn(kOne, depot::kPadding, -kMost); }, 19},
    {"ANegativeLink", [](Words& words) { words.setIn(kOne, depot::kLeft, -1); }, 19},
    {"ALinkToItself", [](Words& words) { words.setIn(kOne, depot::kLeft, words.offsetOf(kOne)); }, 50},
    {"TwoRecordsThatLeadToEachOther",
     [](Words& words) {
       words.setIn(kOne, depot::kLeft, words.offsetOf(kOther));
       words.setIn(kOther, depot::kRight, words.offsetOf(kOne));
     },
     50},
};

void damageDatabase(const Damage& damage) {
  const std::string healthy = healthyDatabase();
  Words words({healthy.begin(), healthy.end()});
  damage.damage(words);
  writeFile(kDatabase, {words.file().begin(), words.file().end()});
}

void expectDamage(const Ended& devices, int lines) {
  EXPECT_EQ(devices.status, 1);
  EXPECT_EQ(std::ranges::count(devices.output, '\n'), lines) << devices.output;
  EXPECT_EQ(devices.errors,
            "tembra-assoc: the device database /tmp/ddb is damaged: there may be devices that cannot be read.\n");
}

class DamagedDatabase : public testing::TestWithParam<Damage> {};

TEST_P(DamagedDatabase, IsShownAsFarAsItCanBeReadAndToldToBeDamaged) {
  damageDatabase(GetParam());
  constexpr int kHeading = 1;
  expectDamage(runAssoc({"devices"}), kHeading + GetParam().devicesShown);
  expectDamage(runAssoc({"devices", "--json"}), GetParam().devicesShown);
}

INSTANTIATE_TEST_SUITE_P(Of, DamagedDatabase, testing::ValuesIn(kDamages),
                         [](const auto& test) { return test.param.name; });

// What the library does not notice by itself it looks for when it opens the file.
TEST(Add, TellsThatTheLibraryRepairsADatabaseWhoseLinksFormACycle) {
  SimRouter router;
  const auto* const cycle = std::ranges::find(kDamages, std::string("ALinkToItself"), &Damage::name);
  damageDatabase(*cycle);
  const Ended added = router.add("siren", {});
  EXPECT_EQ(added.status, 0) << added.errors;
  EXPECT_NE(added.errors.find("a damaged one. The library repairs it when it opens it."), std::string::npos)
      << added.errors;
  router.stop();
}

}  // namespace
}  // namespace tembra::test
