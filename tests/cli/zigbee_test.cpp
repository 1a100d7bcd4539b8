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
    writeFile("/tmp/own.json", R"({"devices": [{"label": "alarm-panel", "description": "zone type 0",
        "manufacturer": "", "model": "", "clusters": [[1280, 1]]}]})");
  }

  [[nodiscard]] Ended add(const std::vector<std::string>& arguments) { return router_->add("alarm-panel", arguments); }

  void start() { router_.emplace(std::vector<std::string>{"--catalogue", "/tmp/own.json"}); }

  std::optional<SimRouter> router_;
};

Json lastLine(const std::string& output) {
  const std::string lines = output.substr(0, output.find_last_not_of('\n') + 1);
  return Json::parse(lines.substr(lines.rfind('\n') + 1));
}

Json lastButOne(const std::string& output) {
  const std::string lines = output.substr(0, output.find_last_not_of('\n') + 1);
  return lastLine(lines.substr(0, lines.rfind('\n') + 1));
}

TEST_F(ZigbeeChoice, IsTheUsersToMake) {
  struct Row {
    std::vector<std::string> arguments;
    const char* type;
    const char* name;
  };
  const Row rows[] = {{{"--type", "KeyFob"}, "KeyFob", "KeyFob #1"},
                      {{"--type", "10"}, "StandardCIE", "StandardCIE #1"},
                      {{"--yes"}, "StandardCIE", "StandardCIE #1"}};
  for (const Row& row : rows) {
    start();
    const Ended added = add(row.arguments);
    ASSERT_EQ(added.status, 0) << added.errors;
    router_->waitFor("stored");
    const Json device = lastLine(runAssoc({"devices", "--json"}).output);
    EXPECT_EQ(device.at("type").at("name"), row.type);
    EXPECT_EQ(device.at("name"), row.name);
    router_->stop();
    std::filesystem::remove(kDatabase);  // else it keeps its name
  }
}

TEST_F(ZigbeeChoice, IsOfferedAsJson) {
  start();
  const Ended added = add({"--json", "--type", "KeyFob"});
  EXPECT_EQ(added.status, 0) << added.errors;
  std::istringstream lines(added.output);
  std::vector<Json> events;
  for (std::string line; std::getline(lines, line);) events.push_back(Json::parse(line));
  ASSERT_EQ(events.size(), 6U);
  EXPECT_EQ(events[3].at("type"), Json::parse(R"({"number": 10, "name": "StandardCIE"})"));
  EXPECT_EQ(events[3].at("choices"), Json::parse(R"([{"number": 10, "name": "StandardCIE"},
      {"number": 21, "name": "StandardWarningDevice"}, {"number": 19, "name": "KeyFob"}])"));
  EXPECT_EQ(events[4].at("type"), Json::parse(R"({"number": 19, "name": "KeyFob"})"));
  router_->stop();
}

TEST_F(ZigbeeChoice, MustBeMadeAndBeOneOfThem) {
  start();
  EXPECT_EQ(add({}).sentence(),
            "tembra-assoc: the device's type must be chosen with --type, or --yes for the first: "
            "StandardCIE, StandardWarningDevice, KeyFob.");
  EXPECT_EQ(add({"--type", "Siren"}).sentence(),
            "tembra-assoc: the device cannot be a Siren; possible: StandardCIE, StandardWarningDevice, KeyFob.");
  router_->stop();
}

TEST(ZigbeeName, IsRefusedWhereTheRecordHasNoRoom) {
  struct Row {
    const char* device;
    std::string name;
    const char* why;  ///< empty: it fits
  };
  const Row rows[] = {
      {"zb-plug", std::string(31, 'n'), ""},
      {"zb-dimmer", std::string(32, 'n'), "the name has 32 bytes, and there is room for 31."},
      {"zb-motion", std::string(30, 'n') + "ö", "the name has 32 bytes, and there is room for 31."},
  };
  SimRouter router;
  for (const Row& row : rows) {
    const Ended added = router.add(row.device, {"--name", row.name});
    const std::string why = row.why;
    EXPECT_EQ(added.status, why.empty() ? 0 : 1);
    EXPECT_EQ(added.sentence(), why.empty() ? "" : "tembra-assoc: " + why);
  }
  EXPECT_EQ(lastLine(runAssoc({"devices", "--json"}).output).at("name"), std::string(31, 'n'));
  router.stop();
}

TEST(ZigbeeRemoval, DropsAKnownDevice) {
  SimRouter router;
  ASSERT_EQ(router.add("zb-water", {"--name", "Cellar"}).status, 0);
  router.waitFor("device 1 stored");
  const Ended removed = router.remove("zb-water", {"--yes", "--json"});
  EXPECT_EQ(removed.status, 0) << removed.errors;
  const Json left = lastButOne(removed.output);
  EXPECT_EQ(left.at("event"), "removed");
  EXPECT_EQ(left.at("name"), "Cellar");
  EXPECT_EQ(left.at("id"), 1);
  router.waitFor("dropped");
  EXPECT_EQ(runAssoc({"devices", "--json"}).output, "");
  router.stop();
}

TEST(ZigbeeRemoval, FailsForADeviceThatIsNotInTheList) {
  SimRouter router;
  const Ended removed = router.remove("zb-water", {"--yes"});
  EXPECT_EQ(removed.status, 1);
  EXPECT_NE(removed.sentence().find("The device that left is not in the device list."), std::string::npos)
      << removed.errors;
  router.stop();
}

}  // namespace
}  // namespace tembra::test
