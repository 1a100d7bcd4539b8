// What was recorded happens again: the same answers at the same moments give the same events, reasons and devices. And
// a front end that says something else is told where.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <ostream>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "kit/database.h"
#include "sim/support/recording_maker.h"
#include "support/program.h"
#include "support/sim_router.h"

namespace tembra::test {
namespace {

namespace fs = std::filesystem;
using nlohmann::json;

constexpr char kRecording[] = "/tmp/recording.pcapng";
constexpr char kReplayedBridge[] = "02:a1:b2:0c:00:01";

using Commands = std::vector<std::vector<std::string>>;

struct Story {
  const char* name;
  const char* scenario;  ///< its steps, or the name of a file of the examples
  std::vector<std::string> options;
  Commands commands;
  Clock clock = Clock::kReal;
  bool refusesAfterAll = false;  ///< the simulated server keeps the code before it says that it does not
  bool isMute = false;           ///< nothing is sent: the replay has no end of its own
};

void PrintTo(const Story& story, std::ostream* stream) { *stream << story.name; }

std::vector<Story> shippedStories() {
  return {
      {"APlugAndAContact", "plug-and-contact.json", {}, {{"add"}, {"add"}, {"remove"}}},
      {"FallsSilent", "field/falls-silent.json", {}, {{"add"}, {"remove"}}, Clock::kFast},
      {"HueSilent", "field/hue-silent.json", {}, {{"hue", "add", kReplayedBridge}}, Clock::kFast},
      {"Known", "field/known.json", {}, {{"add"}, {"add"}}},
      {"NestRefuses", "field/nest-refuses.json", {}, {{"nest", "link", "code"}}, Clock::kReal, true},
      {"NoBridge", "field/no-bridge.json", {}, {{"hue", "discover"}, {"hue", "add", kReplayedBridge}}},
      {"NoRadio", "field/no-radio.json", {}, {{"add"}}, Clock::kFast, false, true},
      {"NoZwave", "field/no-zwave.json", {}, {{"add"}}, Clock::kFast},
      {"Plug", "field/plug.json", {}, {{"add"}, {"remove"}, {"add"}}},
      {"Quiet", "field/quiet.json", {}, {{"add"}}, Clock::kFast},
      {"RadioFails", "field/radio-fails.json", {}, {{"add"}}},
      {"SlowInfo", "field/slow-info.json", {}, {{"add"}, {"remove"}}, Clock::kFast},
      {"Unheard", "field/unheard.json", {}, {{"add"}}, Clock::kFast},
      {"UnknownKind", "field/unknown-kind.json", {}, {{"add"}}, Clock::kFast},
  };
}

std::vector<Story> radioStories() {
  return {
      {"AServerThatComesBack",
       R"([{"on": "add", "kill": "zigbee"}, {"on": "cancel", "start": "zigbee"}, {"on": "add", "press": "siren"}])",
       {},
       {{"add"}, {"add"}},
       Clock::kFast},
      {"FailingRadios",
       R"([{"on": "add", "fail": "zwave"}, {"on": "add", "fail": "zigbee"}, {"on": "remove", "fail": "zwave"}])",
       {},
       {{"add"}, {"add"}, {"remove"}}},
      {"FaultyZwave",
       R"([{"on": "add", "press": "siren"}, {"on": "add", "press": "dimmer"}, {"on": "remove", "press": "siren"}])",
       {"--fault", "joined:foreign:always", "--fault", "identity:short=1", "--fault", "removed:twice"},
       {{"add"}, {"add"}, {"remove"}}},
      {"AnIdentityTwice", R"([{"on": "add", "press": "siren"}])", {"--fault", "identity:twice"}, {{"add"}}},
      {"FaultyZigbee",
       R"([{"on": "add", "press": "zb-dimmer"}, {"on": "add", "press": "zb-contact"}, {"on": "remove", "press": "zb-dimmer"}])",
       {"--fault", "found:twice", "--fault", "getting:reordered", "--fault", "complete:late=3000:2"},
       {{"add"}, {"add"}, {"remove"}}},
      {"TheSameDeviceTwice",
       R"([{"on": "add", "press": "siren"}, {"on": "add", "press": "siren"}, {"on": "add", "press": "siren#2"}])",
       {},
       {{"add"}, {"add"}, {"add"}}},
      {"ADeviceOfAnotherNetwork", R"([{"on": "remove", "press": "zb-plug"}])", {}, {{"remove"}}},
      {"NobodyPresses", "[]", {}, {{"add"}}, Clock::kFast},
      {"TheDescriptionNeverComes",
       R"([{"on": "add", "press": "siren"}])",
       {"--fault", "info:lost"},
       {{"add"}},
       Clock::kFast},
      {"StatusesOfItsOwn",
       R"([{"on": "add", "after": 2, "answer": "zigbee 3"}, {"answer": "zigbee 1"}, {"after": 1, "answer": "zigbee 11"}])",
       {},
       {{"add"}}},
  };
}

std::vector<Story> hueNestAndResetStories() {
  return {
      {"BridgesAndBulbs",
       R"([{"on": "hue-add", "after": 1, "press": "hue-button"}])",
       {"--bridges", "3"},
       {{"hue", "discover"},
        {"hue", "add", kReplayedBridge},
        {"hue", "add-bulb", kReplayedBridge, "Lamp"},
        {"hue", "refresh", kReplayedBridge, "user"},
        {"hue", "add-bulb", "02:a1:b2:0c:00:02", "Lamp"},
        {"hue", "remove", kReplayedBridge}}},
      {"ABulbThatStays",
       R"([{"on": "hue-add", "press": "hue-button"}])",
       {},
       {{"hue", "add", kReplayedBridge}, {"hue", "add-bulb", kReplayedBridge, "Lamp"}}},
      {"AnAccount", "[]", {"--fault", "nest:late=500"}, {{"nest", "link", "code"}, {"nest", "unlink"}}},
      {"ALinkedAccount", "[]", {}, {{"nest", "link", "code"}}},
      {"AReset",
       R"([{"on": "add", "press": "siren"}])",
       {},
       {{"add"}, {"reset", "all"}, {"reset", "zwave"}},
       Clock::kFast},
  };
}

std::vector<Story> stories() {
  std::vector<Story> all = shippedStories();
  for (const auto& more : {radioStories(), hueNestAndResetStories()}) all.insert(all.end(), more.begin(), more.end());
  return all;
}

std::string scenarioFile(const Story& story) {
  if (*story.scenario != '[') return std::string(TEMBRA_EXAMPLES) + "/" + story.scenario;
  std::ofstream("/tmp/scenario.json") << story.scenario;
  return "/tmp/scenario.json";
}

// What a command says, without its times.
std::string eventsOf(const std::string& output) {
  std::string events;
  std::istringstream lines(output);
  for (std::string line; std::getline(lines, line);) {
    json event = json::parse(line);
    for (const char* time : {"ms", "ends_in_ms", "waited_ms"}) event.erase(time);
    events += event.dump() + "\n";
  }
  return events;
}

struct Happened {
  std::vector<std::string> events;
  std::vector<int> statuses;
  kit::Bytes database;
  bool isLinked;
};

void stopRouter() { Program({TEMBRA_SIM_PROGRAM, "stop"}).end(); }

Happened play(const Story& story) {
  Happened happened;
  for (std::vector<std::string> command : story.commands) {
    command.insert(command.end(), {"--yes", "--json"});
    const Ended ended = runAssoc(command, story.clock);
    happened.events.push_back(eventsOf(ended.output));
    happened.statuses.push_back(ended.status);
  }
  return happened;
}

void keepWhatRemains(Happened& happened) {
  happened.database = kit::Database().file();
  happened.isLinked = fs::exists("/tmp/Authcode");
  fs::remove("/tmp/ddb");
  fs::remove("/tmp/Authcode");
}

// What a scenario does at once is done when the simulator has answered a few times.
void awaitFirstSteps() {
  for (int i = 0; i < 3; ++i) EXPECT_EQ(Program({TEMBRA_SIM_PROGRAM, "status"}).end().status, 0);
}

Happened record(const Story& story) {
  std::vector<std::string> command{TEMBRA_SIM_PROGRAM, "run", "--speed", "10", "--record", kRecording};
  command.insert(command.end(), {"--scenario", scenarioFile(story)});
  command.insert(command.end(), story.options.begin(), story.options.end());
  Program router(command);
  router.waitFor("tembra-sim: ready");
  awaitFirstSteps();
  Happened happened = play(story);
  if (router.running()) stopRouter();
  EXPECT_EQ(router.exitStatus(), 0) << router.errors();
  keepWhatRemains(happened);
  return happened;
}

class ReplayOf : public testing::TestWithParam<Story> {};

TEST_P(ReplayOf, GivesTheSameEventsReasonsAndDevices) {
  const Happened then = record(GetParam());
  Program router({TEMBRA_SIM_PROGRAM, "replay", kRecording});
  router.waitFor("tembra-sim: ready");
  awaitFirstSteps();
  Happened now = play(GetParam());
  if (GetParam().isMute) stopRouter();
  const Ended ended = router.end();
  EXPECT_EQ(ended.status, 0) << ended.errors;
  EXPECT_NE(ended.output.find("everything was as it was then"), std::string::npos) << ended.output;
  keepWhatRemains(now);
  EXPECT_EQ(now.events, then.events);
  EXPECT_EQ(now.statuses, then.statuses);
  EXPECT_EQ(now.database, then.database);
  EXPECT_EQ(now.isLinked, then.isLinked && !GetParam().refusesAfterAll);
}

// The scenario that a recording tells does the same without the recording.
TEST_P(ReplayOf, IsAScenarioToo) {
  const Happened then = record(GetParam());
  const Ended scenario = Program({TEMBRA_SIM_PROGRAM, "scenario", kRecording, "--make-db", "/tmp/ddb"}).end();
  ASSERT_EQ(scenario.status, 0) << scenario.errors;
  std::ofstream("/tmp/told.json") << scenario.output;
  Program router({TEMBRA_SIM_PROGRAM, "run", "--speed", "4", "--timeline", "--scenario", "/tmp/told.json"});
  router.waitFor("tembra-sim: ready");
  awaitFirstSteps();
  Happened now = play(GetParam());
  const Ended ended = router.end();
  EXPECT_EQ(ended.status, 0) << ended.errors;
  keepWhatRemains(now);
  EXPECT_EQ(now.events, then.events) << scenario.output << ended.output;
  EXPECT_EQ(now.statuses, then.statuses);
  EXPECT_EQ(now.database, then.database) << scenario.output << ended.output;
  EXPECT_EQ(now.isLinked, then.isLinked);
}

INSTANTIATE_TEST_SUITE_P(Stories, ReplayOf, testing::ValuesIn(stories()),
                         [](const auto& info) { return std::string(info.param.name); });

TEST(Stories, HoldEveryShippedScenario) {
  std::set<std::string> told;
  for (const Story& story : stories()) told.insert(story.scenario);
  std::size_t shipped = 0;
  for (const auto& entry : fs::recursive_directory_iterator(TEMBRA_EXAMPLES)) {
    if (entry.path().extension() != ".json") continue;
    ++shipped;
    EXPECT_TRUE(told.contains(fs::relative(entry.path(), TEMBRA_EXAMPLES))) << entry.path();
  }
  EXPECT_GE(shipped, 10U);
}

TEST(AFolder, IsNoRecording) {
  for (const char* command : {"replay", "scenario"}) {
    EXPECT_EQ(Program({TEMBRA_SIM_PROGRAM, command, "/tmp"}).end().errors,
              "tembra-sim: /tmp: is a folder and no recording\n");
  }
}

// As tcpdump records: what devices there were is not in it.
TEST(ARecordingWithoutADeviceList, IsPlayedWithAWarning) {
  namespace maker = sim::test;
  constexpr std::uint32_t kPcap = 0xA1B2C3D4;
  constexpr std::uint16_t kRawIp = 101;
  std::ofstream(kRecording, std::ios::binary)
      << maker::pcap(maker::Order::kLittle, kPcap, kRawIp)
      << maker::pcapPacket(maker::Order::kLittle, 1'000, 0, maker::ipv4("what the Z-Wave server says"));
  const std::string warning = "tembra-sim: the recording holds no device list";
  EXPECT_EQ(Program({TEMBRA_SIM_PROGRAM, "scenario", kRecording}).end().errors.find(warning), 0U);
  Program router({TEMBRA_SIM_PROGRAM, "replay", kRecording});
  router.waitFor("tembra-sim: ready");
  stopRouter();
  EXPECT_EQ(router.end().errors.find(warning), 0U);
}

// Its recorder lost its power. What it wrote before is played.
TEST(ACutRecording, IsTakenUntilItsEndWithAWarning) {
  record({"Short", R"([{"on": "add", "press": "siren"}])", {}, {{"add"}}});
  fs::resize_file(kRecording, fs::file_size(kRecording) - 1);
  const Ended scenario = Program({TEMBRA_SIM_PROGRAM, "scenario", kRecording}).end();
  EXPECT_EQ(scenario.status, 0) << scenario.errors;
  EXPECT_NE(scenario.output.find(R"("press": "siren")"), std::string::npos) << scenario.output;
  EXPECT_NE(scenario.errors.find("the recording was cut off; "), std::string::npos) << scenario.errors;
  Program router({TEMBRA_SIM_PROGRAM, "replay", kRecording});
  router.waitFor("tembra-sim: ready");
  play({"Short", "", {}, {{"add"}}});
  EXPECT_NE(router.end().errors.find("the recording was cut off; "), std::string::npos);
}

// Nobody presses a button. Both radios are told so, the second right after the first: of the two it is the first that
// comes after a long wait.
TEST(ALongWait, PassesWhateverTheSpeedOfTheServersIs) {
  const Story story{"NobodyPresses", "[]", {}, {{"add"}}, Clock::kThirtyfold};
  const Happened then = record(story);
  Program router({TEMBRA_SIM_PROGRAM, "replay", "--speed", "30", kRecording});
  router.waitFor("tembra-sim: ready");
  EXPECT_EQ(play(story).events, then.events);
  const Ended ended = router.end();
  EXPECT_EQ(ended.status, 0) << ended.errors;
}

// Then the device was known, and the add ended. Now the library reads its description, waits for an answer that nobody
// gave then, and cancels.
TEST(ADeviceThatIsNew, IsNotTakenForTheKnownOneOfThen) {
  {
    SimRouter router;
    EXPECT_EQ(router.add("siren", {"--yes"}).status, 0);
  }
  const Story story{"Known", R"([{"on": "add", "press": "siren"}])", {}, {{"add"}}, Clock::kFast};
  EXPECT_EQ(record(story).statuses, std::vector<int>{1});
  kit::Database().put(kit::Device(1, "Another one").zwave(77));
  Program router({TEMBRA_SIM_PROGRAM, "replay", kRecording});
  router.waitFor("tembra-sim: ready");
  play(story);
  const Ended ended = router.end();
  EXPECT_EQ(ended.status, 1) << ended.output;
  EXPECT_NE(ended.errors.find("hears more than then: cancel"), std::string::npos) << ended.errors;
}

struct Change {
  const char* name;
  std::vector<std::string> command;  ///< in place of the second one
  std::vector<std::string> told;
};

void PrintTo(const Change& change, std::ostream* stream) { *stream << change.name; }

// The recording: a siren is added as "Siren", then a bulb's bridge is refreshed.
const Story& recordedStory() {
  static const Story story{
      "Recorded",
      R"([{"on": "add", "press": "siren"}])",
      {},
      {{"hue", "refresh", kReplayedBridge, "user"}, {"add", "--name", "Siren", "--place", "Hall"}}};
  return story;
}

const std::vector<Change>& changes() {
  static const std::vector<Change> all{
      {"AnotherName",
       {"add", "--name", "Sirens", "--place", "Hall"},
       {"datagram 9 of the recording, the 1st to the HA server (added: Siren), is not the same now (added: Sirens)\n",
        "  offset 621, record.name: then \"Siren\" (00), now \"Sirens\" (73)\n"}},
      {"AnotherPlace",
       {"add", "--name", "Siren", "--place", "Hell"},
       {"(added: Siren), is not the same now (added: Siren)\n",
        "  offset 797, record.location: then \"Hall\" (61), now \"Hell\" (65)\n"}},
      {"ARemoval",
       {"remove"},
       {"of the recording, the 1st to the Z", "Z-Wave server (add), is not the same now (remove)\n",
        "  offset 212, controllerCommand: then 1 (01), now 4 (04)\n"}},
      {"ALinkInPlaceOfAnAdd", {"nest", "link", "code"}, {"the Nest server hears more than then: link the account\n"}},
  };
  return all;
}

class AnotherFrontEnd : public testing::TestWithParam<Change> {};

TEST_P(AnotherFrontEnd, IsToldWhereItDiffers) {
  record(recordedStory());
  Program router({TEMBRA_SIM_PROGRAM, "replay", "--go-on", kRecording});
  router.waitFor("tembra-sim: ready");
  Story changed = recordedStory();
  changed.commands[1] = GetParam().command;
  changed.clock = Clock::kFast;
  play(changed);
  router.signal(SIGTERM);
  const Ended ended = router.end();
  EXPECT_EQ(ended.status, 1);
  for (const std::string& text : GetParam().told) {
    EXPECT_NE(ended.errors.find(text), std::string::npos) << text << "\n\n" << ended.errors;
  }
}

INSTANTIATE_TEST_SUITE_P(Changes, AnotherFrontEnd, testing::ValuesIn(changes()),
                         [](const auto& info) { return std::string(info.param.name); });

}  // namespace
}  // namespace tembra::test
