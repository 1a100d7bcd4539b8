// ZigBee devices on the command line: the choice of a type, the short texts of their record, and their removal.
#include <gtest/gtest.h>

#include <filesystem>
#include <nlohmann/json.hpp>
#include <sstream>

#include "support/files.h"
#include "support/sim_router.h"

namespace tembra::test {
namespace {

using Json = nlohmann::json;

// The only ZigBee devices with types to choose from are those of zone type 0, of which the simulator's own catalogue
// has none.
class ZigbeeChoice : public testing::Test {
 protected:
  ZigbeeChoice() {
    std::filesystem::create_directory("/tmp/catalogue");
    std::filesystem::copy(TEMBRA_CATALOGUE "/zwave.json", "/tmp/catalogue/zwave.json");
    writeFile("/tmp/catalogue/zigbee.json", R"({"devices": [{"label": "alarm-panel", "description": "zone type 0",
        "manufacturer": "", "model": "", "clusters": [[1280, 1]]}]})");
  }

  [[nodiscard]] Ended add(const std::vector<std::string>& arguments) { return router_->add("alarm-panel", arguments); }

  void start() { router_.emplace(std::vector<std::string>{"--catalogue", "/tmp/catalogue"}); }

  std::optional<SimRouter> router_;
};

Json lastLine(const std::string& output) {
  const std::string lines = output.substr(0, output.find_last_not_of('\n') + 1);
  return Json::parse(lines.substr(lines.rfind('\n') + 1));
}

TEST_F(ZigbeeChoice, IsTheUsersToMake) {
  struct Row {
    std::vector<std::string> arguments;
    const char* type;
    const char* name;
  };
  const Row rows[] = {{{"--type", "KeyFob"}, "KeyFob", "KeyFob #1"},
                      {{"--type", "10"}, "StandardCIE", "StandardCIE #2"},
                      {{"--yes"}, "StandardWarningDevice", "StandardWarningDevice #3"}};
  start();
  for (const Row& row : rows) {
    const Ended added = add(row.arguments);
    ASSERT_EQ(added.status, 0) << added.errors;
    router_->waitFor("stored");
    const Json device = lastLine(runAssoc({"devices", "--json"}).output);
    EXPECT_EQ(device.at("type"), row.type);
    EXPECT_EQ(device.at("name"), row.name);
  }
  router_->stop();
}

TEST_F(ZigbeeChoice, IsOfferedAsJson) {
  start();
  const Ended added = add({"--json", "--type", "KeyFob"});
  EXPECT_EQ(added.status, 0) << added.errors;
  std::istringstream lines(added.output);
  std::vector<Json> events;
  for (std::string line; std::getline(lines, line);) events.push_back(Json::parse(line));
  ASSERT_EQ(events.size(), 4U);
  EXPECT_EQ(events[2], Json::parse(R"({"event": "SELECT_TYPE", "code": 6, "source": "ZigBee",
      "type": {"number": 10, "name": "StandardCIE"},
      "choices": [{"number": 21, "name": "StandardWarningDevice"}, {"number": 19, "name": "KeyFob"},
                  {"number": 10, "name": "StandardCIE"}]})"));
  EXPECT_EQ(events[3].at("type"), Json::parse(R"({"number": 19, "name": "KeyFob"})"));
  router_->stop();
}

TEST_F(ZigbeeChoice, MustBeMadeAndBeOneOfThem) {
  start();
  EXPECT_EQ(add({}).sentence(),
            "tembra-assoc: the device's type must be chosen with --type (or --yes for the first): "
            "StandardWarningDevice, KeyFob, StandardCIE.");
  EXPECT_EQ(add({"--type", "Siren"}).sentence(),
            "tembra-assoc: the device cannot be a Siren; possible: StandardWarningDevice, KeyFob, StandardCIE.");
  router_->stop();
}

TEST(ZigbeeName, IsCutToWhatTheRecordHolds) {
  struct Row {
    const char* device;
    std::string name;
    std::size_t kept;
  };
  const Row rows[] = {
      {"zb-plug", std::string(31, 'n'), 31},
      {"zb-dimmer", std::string(32, 'n'), 31},
      {"zb-siren", std::string(40, 'n'), 31},
      {"zb-motion", std::string(30, 'n') + "ö", 30},
  };
  SimRouter router;
  for (const Row& row : rows) {
    const Ended added = router.add(row.device, {"--name", row.name});
    ASSERT_EQ(added.status, 0) << added.errors;
    const bool whole = row.kept == row.name.size();
    EXPECT_EQ(added.sentence(), whole ? ""
                                      : "tembra-assoc: the name was cut to the " + std::to_string(row.kept) +
                                            " bytes that the device's record holds.");
    router.waitFor("stored");
    const Json device = lastLine(runAssoc({"devices", "--json"}).output);
    EXPECT_EQ(device.at("name"), row.name.substr(0, row.kept));
  }
  router.stop();
}

TEST(ZigbeeRemoval, DropsAKnownDevice) {
  SimRouter router;
  ASSERT_EQ(router.add("zb-water", {"--name", "Cellar"}).status, 0);
  router.waitFor("device 1 stored");
  const Ended removed = router.remove("zb-water", {"--yes", "--json"});
  EXPECT_EQ(removed.status, 0) << removed.errors;
  EXPECT_EQ(Json::parse(removed.output), Json::parse(R"({"event": "REMOVED", "code": 11, "source": "ZigBee",
      "name": "Cellar", "id": 1})"));
  router.waitFor("dropped");
  EXPECT_EQ(runAssoc({"devices", "--json"}).output, "");
  router.stop();
}

TEST(ZigbeeRemoval, FailsForADeviceThatIsNotInTheList) {
  SimRouter router;
  const Ended removed = router.remove("zb-water", {"--yes"});
  EXPECT_EQ(removed.status, 1);
  EXPECT_EQ(removed.sentence(),
            "tembra-assoc: the device that answered is not in the device list; nothing was dropped from it.");
  router.stop();
}

}  // namespace
}  // namespace tembra::test
