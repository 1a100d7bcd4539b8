// Adding without a terminal: what the command line tells, what is taken by default, and how it ends.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <ostream>
#include <sstream>

#include "support/files.h"
#include "support/sim_router.h"
#include "support/udp_listener.h"

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
  const char* said = "";
};

void PrintTo(const Success& row, std::ostream* out) { *out << row.name; }

const Success kSuccesses[] = {
    {"TypeByName",
     "metering-plug",
     {"--type", "MeterSwitch", "--name", "Washing machine", "--place", "Bath"},
     "1   Washing machine  MeterSwitch  Z-Wave  2"},
    {"TypeByNumber", "metering-plug", {"--type", "43"}, "1   MultiSwitch #1  MultiSwitch  Z-Wave  2"},
    {"ProposedTypeWithYes", "metering-plug", {"--yes"}, "1   MeterSwitch #1  MeterSwitch  Z-Wave  2"},
    {"ProposedTypeThatTheLibraryDoesNotOffer", "outlet", {"--yes"}, "1   OutletSwitch #1  OutletSwitch  Z-Wave  2"},
    {"ProposedTypeByName", "outlet", {"--type", "OutletSwitch"}, "1   OutletSwitch #1  OutletSwitch  Z-Wave  2"},
    {"NoChoiceOfTypes", "siren", {}, "1   Siren #1  Siren  Z-Wave  2"},
    {"NoChoiceButTheTypeIsTold", "siren", {"--type", "Siren"}, "1   Siren #1  Siren  Z-Wave  2"},
    {"GenericDevice", "chime", {}, "1   GenericDevice #1  GenericDevice  Z-Wave  2"},
    {"GenericDeviceOfAChosenType",
     "roller-shutter",
     {"--type", "MotorControl"},
     "1   GenericDevice #1  GenericDevice  Z-Wave  2",
     "It stays a GenericDevice in the list: MotorControl says what its values are.\n"},
};

class AddSuccess : public testing::TestWithParam<Success> {};

TEST_P(AddSuccess, EndsInTheDeviceList) {
  SimRouter router;
  const Ended added = router.add(GetParam().device, GetParam().arguments);
  ASSERT_EQ(added.status, 0) << added.errors;
  EXPECT_NE(added.output.find("Added "), std::string::npos) << added.output;
  EXPECT_NE(added.output.find(GetParam().said), std::string::npos) << added.output;
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
     "the device's type must be chosen with --type, or --yes for the first: MeterSwitch, MultiSwitch.",
     true},
    {"TypeNotOffered",
     "metering-plug",
     {"--type", "Siren"},
     "the device cannot be a Siren; possible: MeterSwitch, MultiSwitch.",
     true},
    {"NoChoiceAndAnotherTypeTold",
     "siren",
     {"--type", "DoorLock"},
     "the device cannot be a DoorLock; possible: Siren.",
     true},
    {"RadioGivesUp", "--fail", {}, "The Z-Wave radio gave up.", false},
    {"NothingKnownOfIt",
     "no-basic-class",
     {},
     "The device Z-Wave node 2 described itself, but it fits no kind of device.",
     false},
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
  const Ended again = router.add("siren", {});
  EXPECT_EQ(again.status, 1);
  EXPECT_EQ(again.sentence(),
            "tembra-assoc: The device is known already as Siren #1 (number 1). To add it anew, remove it first. "
            "\"tembra-assoc add --again\" does both and keeps the name.");
  router.stop();
}

TEST(Add, WritesOneJsonObjectForEachEvent) {
  SimRouter router;
  const Ended added = router.add("metering-plug", {"--json", "--type", "MeterSwitch"});
  EXPECT_EQ(added.status, 0) << added.errors;
  const std::vector<Json> objects = lines(added.output);
  ASSERT_EQ(eventNames(objects),
            (std::vector<std::string>{"waiting", "answered", "reading", "found", "added", "ended"}));
  EXPECT_EQ(objects[3].at("choices"),
            Json::parse(R"([{"number": 45, "name": "MeterSwitch"}, {"number": 43, "name": "MultiSwitch"}])"));
  EXPECT_EQ(objects[4].at("name"), "MeterSwitch #1");
  EXPECT_EQ(objects[5].at("outcome"), "done");
  router.stop();
}

// A program answers by lines of JSON; those that are wrong are told so, and it is asked again.
std::vector<std::string> answered(const std::string& answers) {
  writeFile("/tmp/answers", answers);
  return {"/bin/sh", "-c", TEMBRA_ASSOC_PROGRAM " add --json </tmp/answers"};
}

TEST(Add, IsAnsweredByLinesOfJson) {
  SimRouter router;
  Program add(answered(R"({"type":"Siren"}
no JSON
{"name":"Wash\u001b"}
{"type":"Sirene"}
{"type":4294967339}
{"name":1}
{"colour":"red"}
{"type":"MultiSwitch","name":"W\u00e4sche","place":"Bad"}
)"));
  router.pressOnAdd("metering-plug");
  const Ended added = add.end();
  EXPECT_EQ(added.status, 0) << added.output;
  const std::vector<Json> objects = lines(added.output);
  EXPECT_EQ(eventNames(objects), (std::vector<std::string>{
                                     "waiting",  "answered", "reading",  "found",    "question", "remark",   "question",
                                     "remark",   "question", "remark",   "question", "remark",   "question", "remark",
                                     "question", "remark",   "question", "remark",   "question", "added",    "ended"}));
  std::vector<std::string> remarks;
  for (const Json& object : objects) {
    if (object.at("event") == "remark") remarks.push_back(object.at("text"));
  }
  EXPECT_EQ(remarks,
            (std::vector<std::string>{
                "the device cannot be a Siren; possible: MeterSwitch, MultiSwitch.", "the answer is no JSON object.",
                "the name has control characters.", R"("Sirene" is neither the name nor the number of a device type.)",
                "4294967339 is neither the name nor the number of a device type.", "the answer's \"name\" is no text.",
                R"(the answer has a member "colour"; possible: type, name, place, cancel.)"}));
  EXPECT_EQ(objects[19].at("name"), "W\u00e4sche");
  EXPECT_EQ(objects[19].at("type").at("name"), "MultiSwitch");
  router.stop();
}

TEST(Add, AsksAProgramAgainForWhatDoesNotFitTheDevice) {
  SimRouter router;
  writeFile("/tmp/answers", "{\"name\":\"Dim\"}\n");
  Program add({"/bin/sh", "-c",
               TEMBRA_ASSOC_PROGRAM " add --json --type MultiSwitch --name " + std::string(180 - 1, 'n') +
                   " --place Bath </tmp/answers"});
  router.pressOnAdd("zb-dimmer");
  const Ended added = add.end();
  EXPECT_EQ(added.status, 0) << added.output;
  const std::vector<Json> objects = lines(added.output);
  EXPECT_EQ(eventNames(objects), (std::vector<std::string>{"remark", "waiting", "answered", "reading", "found",
                                                           "remark", "remark", "question", "added", "ended"}))
      << added.output;
  EXPECT_EQ(objects[5].at("text"), "the device cannot be a MultiSwitch; possible: MultilevelSwitchOnOff.");
  EXPECT_EQ(objects[6].at("text"), "the name has 179 bytes, and there is room for 31.");
  EXPECT_EQ(objects[8].at("name"), "Dim");
  router.stop();
}

TEST(Add, RefusesANameThatNoDeviceOfTheRadiosHasRoomFor) {
  const UdpListener zigbee("127.255.255.253", 8888);
  const Ended refused = runAssoc({"add", "--name", std::string(32, 'n')});
  EXPECT_EQ(refused.status, 2);
  EXPECT_EQ(refused.errors, "tembra-assoc: the name has 32 bytes, and a ZigBee device has room for 31.\n");
}

TEST(Add, IsCancelledByALineOfJson) {
  SimRouter router;
  Program add(answered("{\"cancel\":true}\n"));
  const Ended ended = add.end();
  EXPECT_EQ(ended.status, 1);
  EXPECT_EQ(lines(ended.output).back().at("outcome"), "cancelled");
  router.stop();
}

TEST(Add, IsNotDoneWhenAProgramEndsItsAnswers) {
  SimRouter router;
  Program add(answered(""));
  router.pressOnAdd("metering-plug");
  const Ended ended = add.end();
  EXPECT_EQ(ended.status, 1);
  EXPECT_EQ(lines(ended.output).back().at("text"), "the input ended, so the device was not added.");
  router.waitForBothRadiosToHear("cancel");
  router.stop();
}

TEST(Add, WorksWithStandardInputClosed) {
  SimRouter router;
  Program program(assocCommand({"add"}), Clock::kReal, Input::kClosed);
  router.pressOnAdd("siren");
  EXPECT_EQ(program.end().status, 0);
  router.stop();
}

TEST(Add, SaysThatTheHaServerMayKeepAnotherFile) {
  SimRouter router;
  const Ended told = router.add("dimmer", {"--db", "/tmp/other", "--json", "--yes"});
  EXPECT_EQ(told.status, 1);
  const std::vector<Json> objects = lines(told.output);
  EXPECT_EQ(eventNames(objects),
            (std::vector<std::string>{"waiting", "answered", "reading", "found", "ended", "remark"}));
  EXPECT_EQ(objects.back().at("text"), "Perhaps the HA server keeps another file than /tmp/other.");
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
