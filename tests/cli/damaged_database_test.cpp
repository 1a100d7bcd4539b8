// A device database that is damaged somewhere: the devices that can be read are shown, and nobody is told that they are
// all.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <vector>

#include "database/damages.h"
#include "support/files.h"
#include "support/program.h"

namespace tembra::test {
namespace {

using damages::Damage;

std::vector<Damage> damagesShown() {
  std::vector<Damage> damages;
  std::ranges::copy_if(damages::kDamages, std::back_inserter(damages),
                       [](const Damage& damage) { return damage.shown >= 0; });
  return damages;
}

void damageDatabase(const Damage& damage) {
  const std::string healthy = healthyDatabase();
  depot::Words words({healthy.begin(), healthy.end()});
  damage.cause(words);
  writeFile(kDatabase, {words.file().begin(), words.file().end()});
}

void expectDamage(const Ended& devices, int lines) {
  EXPECT_EQ(devices.status, 1);
  EXPECT_EQ(std::ranges::count(devices.output, '\n'), lines) << devices.output;
  EXPECT_NE((devices.output + devices.errors).find("may be devices that cannot be read."), std::string::npos);
}

nlohmann::json verdictOf(const std::string& id, const std::string& checks) {
  std::istringstream lines(checks);
  for (std::string line; std::getline(lines, line);) {
    if (nlohmann::json check = nlohmann::json::parse(line); check.value("id", "") == id) return check;
  }
  return nullptr;
}

TEST(DamagedDatabaseInAFolder, IsNamedAsTheUserNamesIt) {
  std::filesystem::create_directory("/tmp/a-folder");
  writeFile("/tmp/a-folder/devices", "no database");
  const Ended devices = runAssoc({"devices", "--db", "/tmp/a-folder/devices"});
  EXPECT_EQ(devices.status, 1);
  EXPECT_EQ(devices.output, "");
  EXPECT_EQ(devices.errors,
            "tembra-assoc: the device database /tmp/a-folder/devices is damaged, or none: there may be devices that "
            "cannot be read.\n");
}

class DamagedDatabase : public testing::TestWithParam<Damage> {};

TEST_P(DamagedDatabase, IsShownAsFarAsItCanBeReadAndToldToBeDamaged) {
  damageDatabase(GetParam());
  const int heading = GetParam().shown > 0 ? 1 : 0;
  expectDamage(runAssoc({"devices"}), heading + GetParam().shown);
  constexpr int kErrorObject = 1;
  expectDamage(runAssoc({"devices", "--json"}), kErrorObject + GetParam().shown);
}

INSTANTIATE_TEST_SUITE_P(Of, DamagedDatabase, testing::ValuesIn(damagesShown()),
                         [](const auto& test) { return test.param.name; });

// What the library's readers make of each file stands in the table, which they are held to as well.
TEST(Doctor, SaysOfEachDamageWhetherTheLibraryRepairsIt) {
  for (const Damage& damage : damages::kDamages) {
    damageDatabase(damage);
    const Ended doctor = runAssoc({"doctor", "--json"});
    const nlohmann::json verdict = verdictOf("database-damage", doctor.output);
    ASSERT_TRUE(verdict.is_object()) << damage << ": " << doctor.errors;
    const bool isReadAsItIs =
        damage.course == damages::Course::kOpened || damage.course == damages::Course::kEndedEarly;
    const char* const told = isReadAsItIs ? "The library does not repair such damage" : "repairs it at its next use";
    if (isReadAsItIs && verdict.at("status") == "well") continue;
    EXPECT_NE(verdict.dump().find(told), std::string::npos) << damage << ": " << verdict.dump();
  }
}

// What the library does not notice by itself it looks for when it opens the file.
TEST(HueList, TellsThatTheLibraryRepairsADatabaseWhoseLinksFormACircle) {
  const auto* const circle =
      std::ranges::find(damages::kDamages, std::string("ACircleOnTheWayToADevice"), &Damage::name);
  damageDatabase(*circle);
  const Ended list = runAssoc({"hue", "list"});
  EXPECT_EQ(list.status, 0) << list.errors;
  EXPECT_NE(list.errors.find("The device list is damaged. Devices may be missing, and the library may repair it"),
            std::string::npos)
      << list.errors;
}

}  // namespace
}  // namespace tembra::test
