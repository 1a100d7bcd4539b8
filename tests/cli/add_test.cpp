// Adding without a terminal: what the command line tells, what is taken by default, and how it ends.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <ostream>
#include <sstream>

#include "support/sim_router.h"

namespace tembra::test {
namespace {

using Json = nlohmann::json;

std::vector<Json> lines(const std::string& output) {
  std::vector<Json> objects;
  std::istringstream stream(output);
  for (std::string line; std::getline(stream, line);) objects.push_back(Json::parse(line));
  return objects;
}

std::vector<std::string> eventNames(const std::vector<Json>& objects) {
  std::vector<std::string> names(objects.size());
  std::ranges::transform(objects, names.begin(), [](const Json& object) { return object.at("event"); });
  return names;
}

struct Success {
  const char* name;
  const char* device;
  std::vector<std::string> arguments;
  const char* listed;  ///< as `devices` shows it
};

void PrintTo(const Success& row, std::ostream* out) { *out << row.name; }

const Success kSuccesses[] = {
    {"TypeByName",
     "metering-plug",
     {"--type", "MeterSwitch", "--name", "Washing machine", "--location", "Bath"},
     "1   Washing machine  MeterSwitch  Z-Wave  2"},
    {"TypeByNumber", "metering-plug", {"--type", "43"}, "1   MultiSwitch #1  MultiSwitch  Z-Wave  2"},
    {"FirstTypeWithYes", "metering-plug", {"--yes"}, "1   MultiSwitch #1  MultiSwitch  Z-Wave  2"},
    {"NoChoiceOfTypes", "siren", {}, "1   Siren #1  Siren  Z-Wave  2"},
    {"NoChoiceButTheTypeIsTold", "siren", {"--type", "Siren"}, "1   Siren #1  Siren  Z-Wave  2"},
    {"GenericDevice", "chime", {}, "1   GenericDevice #1  GenericDevice  Z-Wave  2"},
    {"GenericDeviceOfAChosenType",
     "roller-shutter",
     {"--type", "MotorControl"},
     "1   GenericDevice #1  GenericDevice  Z-Wave  2"},
};

class AddSuccess : public testing::TestWithParam<Success> {};

TEST_P(AddSuccess, EndsInTheDeviceList) {
  SimRouter router;
  const Ended added = router.add(GetParam().device, GetParam().arguments);
  ASSERT_EQ(added.status, 0) << added.errors;
  EXPECT_NE(added.output.find("Added "), std::string::npos) << added.output;
  router.waitFor("HA server -> database   device 1 stored");
  const Ended devices = runAssoc({"devices"});
  EXPECT_NE(devices.output.find(GetParam().listed), std::string::npos) << devices.output;
  router.stop();
}

INSTANTIATE_TEST_SUITE_P(Devices, AddSuccess, testing::ValuesIn(kSuccesses),
                         [](const auto& test) { return test.param.name; });

struct Trouble {
  const char* name;
  const char* device;
  std::vector<std::string> arguments;
  const char* sentence;
  bool cancelled;  ///< by the program, on both radios
};

void PrintTo(const Trouble& row, std::ostream* out) { *out << row.name; }

const Trouble kTroubles[] = {
    {"TypeNotTold",
     "metering-plug",
     {},
     "the device's type must be chosen with --type (or --yes for the first): MultiSwitch, MeterSwitch.",
     true},
    {"TypeNotOffered",
     "metering-plug",
     {"--type", "Siren"},
     "the device cannot be a Siren; possible: MultiSwitch, MeterSwitch.",
     true},
    {"NoChoiceAndAnotherTypeTold",
     "siren",
     {"--type", "DoorLock"},
     "the device cannot be a DoorLock; possible: Siren.",
     true},
    {"RadioGivesUp", "--fail", {}, "the device could not be added: the radio gave it up", false},
    {"NothingKnownOfIt", "no-basic-class", {}, "nothing is known of its kind.", false},
};

class AddFailure : public testing::TestWithParam<Trouble> {};

TEST_P(AddFailure, SaysWhy) {
  SimRouter router;
  const Ended added = router.add(GetParam().device, GetParam().arguments);
  ASSERT_EQ(added.status, 1);
  EXPECT_NE(added.sentence().find(GetParam().sentence), std::string::npos) << added.errors;
  // The library itself cancels on the radio that did not answer.
  std::vector<std::string> zigbee = {"add a device", "cancel"};
  std::vector<std::string> zwave = {"add a device"};
  if (GetParam().cancelled) {
    router.waitFor("library -> Z-Wave server   cancel");
    zigbee.emplace_back("cancel");
    zwave.emplace_back("cancel");
  }
  const Told told = router.stop();
  EXPECT_EQ(told.zigbee, zigbee);
  EXPECT_EQ(told.zwave, zwave);
}

INSTANTIATE_TEST_SUITE_P(Devices, AddFailure, testing::ValuesIn(kTroubles),
                         [](const auto& test) { return test.param.name; });

TEST(Add, RefusesAKnownDevice) {
  SimRouter router;
  EXPECT_EQ(router.add("siren", {}).status, 0);
  const Ended again = router.add("siren", {"--json"});
  EXPECT_EQ(again.status, 1);
  EXPECT_EQ(again.sentence(), "tembra-assoc: the device is in the device list already.");
  EXPECT_EQ(eventNames(lines(again.output)), (std::vector<std::string>{"ADDING", "ALREADY_ADDED"}));
  router.stop();
}

TEST(Add, WritesOneJsonObjectForEachEvent) {
  SimRouter router;
  const Ended added = router.add("metering-plug", {"--json", "--type", "MeterSwitch"});
  EXPECT_EQ(added.status, 0) << added.errors;
  const std::vector<Json> objects = lines(added.output);
  ASSERT_EQ(eventNames(objects), (std::vector<std::string>{"ADDING", "GETTING_INFO", "SELECT_TYPE", "CREATED"}));
  EXPECT_EQ(objects[0], Json::parse(R"({"event": "ADDING", "code": 3, "source": "Z-Wave"})"));
  EXPECT_EQ(objects[2], Json::parse(R"({"event": "SELECT_TYPE", "code": 6, "source": "Z-Wave",
      "type": {"number": 45, "name": "MeterSwitch"},
      "choices": [{"number": 43, "name": "MultiSwitch"}, {"number": 45, "name": "MeterSwitch"}]})"));
  EXPECT_EQ(objects[3], Json::parse(R"({"event": "CREATED", "code": 7, "source": "Z-Wave", "name": "MeterSwitch #1",
      "location": "Default", "type": {"number": 45, "name": "MeterSwitch"}})"));
  router.stop();
}

TEST(Add, CutsANameThatTheRecordCannotHoldAtAWholeCharacter) {
  SimRouter router;
  std::string name;
  for (int i = 0; i < 100; ++i) name += "ö";
  const Ended added = router.add("siren", {"--name", name});
  ASSERT_EQ(added.status, 0);
  EXPECT_EQ(added.sentence(), "tembra-assoc: the name was cut to the 178 bytes that the device's record holds.");
  router.waitFor("device 1 stored");
  EXPECT_EQ(lines(runAssoc({"devices", "--json"}).output).at(0).at("name"), name.substr(0, 178));
  router.stop();
}

TEST(Add, TellsTheStatusOfAZigbeeDevice) {
  SimRouter router;
  const Ended added = router.add("zb-dimmer", {"--json"});
  EXPECT_EQ(added.status, 0) << added.errors;
  const std::vector<Json> objects = lines(added.output);
  ASSERT_EQ(eventNames(objects), (std::vector<std::string>{"ADDING", "GETTING_INFO", "CREATED", "CREATED"}));
  EXPECT_EQ(objects[0], Json::parse(R"({"event": "ADDING", "code": 3, "source": "ZigBee", "status": 1,
      "report": {"CommandType": "AddingDevice", "MobileInternalIndex": ""}})"));
  EXPECT_EQ(objects[2].at("type"), objects[3].at("type"));
  router.stop();
}

TEST(Add, CutsTextsToTheShorterRecordOfAZigbeeDevice) {
  SimRouter router;
  const std::string name(40, 'n');
  const std::string location(40, 'l');
  const Ended added = router.add("zb-dimmer", {"--name", name, "--location", location});
  EXPECT_EQ(added.status, 0) << added.errors;
  EXPECT_NE(added.errors.find("the name was cut to the 31 bytes"), std::string::npos) << added.errors;
  EXPECT_NE(added.errors.find("the location was cut to the 31 bytes"), std::string::npos) << added.errors;
  router.waitFor("device 1 stored");
  EXPECT_EQ(lines(runAssoc({"devices", "--json"}).output).at(0).at("name"), name.substr(0, 31));
  router.stop();
}

TEST(Add, WorksWithStandardInputClosed) {
  SimRouter router;
  Program program(assocCommand({"add"}), Clock::kReal, Input::kClosed);
  router.pressOnAdd("siren");
  EXPECT_EQ(program.end().status, 0);
  router.stop();
}

TEST(Add, EntersTheFolderOfADatabaseWhosePathIsTooLongForTheLibrary) {
  const std::string database = "/tmp/a-folder-of-its-own/ddb";
  std::filesystem::create_directory("/tmp/a-folder-of-its-own");
  SimRouter router({"--db", database});
  ASSERT_EQ(router.add("siren", {"--db", database}).status, 0);
  ASSERT_EQ(router.add("dimmer", {"--db", database, "--yes"}).status, 0);
  router.waitFor("device 2 stored");
  EXPECT_NE(runAssoc({"devices", "--db", database}).output.find("MultilevelSwitch #2"), std::string::npos);
  EXPECT_FALSE(std::filesystem::exists("/tmp/ddb"));
  router.stop();
}

}  // namespace
}  // namespace tembra::test
