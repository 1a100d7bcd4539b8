// Every operation of the kit against the simulated router: which events come in which order, and with which reason each
// operation ends. The driver beside this file is the front end.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <sstream>

#include "kit/json_schema.h"
#include "kit/text.h"
#include "support/files.h"
#include "support/program.h"
#include "support/udp_listener.h"

namespace tembra::test {
namespace {

using kit::JsonSchema;
using Json = nlohmann::json;

constexpr const char* kMac = "mac=02:a1:b2:0c:00:01";

std::string with(const std::string& operation, const std::string& settings) { return operation + "," + settings; }

/// A row: what the router does, what the front end does, and what it hears.
struct Story {
  const char* name;
  std::vector<std::string> router;  ///< options of tembra-sim
  const char* scenario;             ///< what its users do
  std::vector<std::string> tasks;
  std::vector<std::string> heard;  ///< one line an operation, see `heardIn`
  Clock clock = Clock::kReal;
  const char* role = "2";
};

void PrintTo(const Story& story, std::ostream* out) { *out << story.name; }

// What the stories tell of an event beside its kind.
std::string particulars(const Json& event) {
  const std::string kind = event.at("event");
  if (kind == "found") return "(" + event.at("type").at("name").get<std::string>() + ")";
  if (kind == "added") {
    return "(" + event.at("name").get<std::string>() + ", " + event.at("type").at("name").get<std::string>() + ", " +
           event.at("place").get<std::string>() + ")";
  }
  if (kind == "removing" || kind == "removed") return "(" + event.at("name").get<std::string>() + ")";
  if (kind == "devices") {
    EXPECT_EQ(event.at("count"), event.at("devices").size());
    std::string names;
    for (const Json& device : event.at("devices")) names += device.at("name").get<std::string>() + ";";
    return "(" + names + ")";
  }
  if (kind == "bridges") return "(" + std::to_string(event.at("bridges").size()) + ")";
  if (kind == "account") return event.at("linked").get<bool>() ? "(linked)" : "(not linked)";
  if (kind == "warning") {
    const std::string device = event.contains("device") ? ": " + event.at("device").at("name").get<std::string>() : "";
    return "(" + event.at("reason").get<std::string>() + device + ")";
  }
  return kind == "ended"
             ? "(" + event.at("outcome").get<std::string>() + ", " + event.at("reason").get<std::string>() + ")"
             : "";
}

// "waiting answered reading found(Siren) added(Siren #1, Siren, Default) ended(done, none)"; of the same kind several
// times in a row only the first.
std::vector<std::string> heardIn(const std::string& output) {
  const JsonSchema eventSchema(TEMBRA_SCHEMAS "/tembra-event.schema.json");
  const JsonSchema stateSchema(TEMBRA_SCHEMAS "/tembra-state.schema.json");
  std::vector<std::string> operations(1);
  std::istringstream lines(output);
  std::string last;
  unsigned number = 0;
  for (std::string line; std::getline(lines, line);) {
    const Json object = Json::parse(line);
    if (object.contains("state")) {
      EXPECT_EQ(stateSchema.faultOf(object.at("state")), "") << line;
      EXPECT_TRUE(last != "ended" || object.at("state").at("operation") == "none") << line;
      continue;
    }
    const bool refused = object.contains("refused");
    if (!refused) {
      EXPECT_EQ(eventSchema.faultOf(object), "") << line;
      EXPECT_EQ(object.at("number"), ++number);
    }
    const std::string kind = refused ? "refused" : object.at("event").get<std::string>();
    if (kind == last && kind != "refused") continue;
    last = kind;
    std::string& operation = operations.back();
    operation += (operation.empty() ? "" : " ") + kind +
                 (refused ? "(" + object.at("refused").get<std::string>() + ")" : particulars(object));
    if (kind == "ended") operations.emplace_back();
  }
  if (operations.back().empty()) operations.pop_back();
  return operations;
}

std::vector<std::string> driver(std::vector<std::string> tasks) {
  tasks.insert(tasks.begin(), TEMBRA_OPERATIONS_DRIVER);
  return tasks;
}

Ended drive(const std::vector<std::string>& tasks, Clock clock = Clock::kReal, const char* role = "2") {
  kit::Settings settings = routerSettings(clock);
  settings["ROLE"] = role;
  return kit::Program(driver(tasks), settings).end();
}

kit::Program simulator(const Story& story) {
  std::vector<std::string> command = {TEMBRA_SIM_PROGRAM, "run", "--speed", "20", "--latency", "20"};
  command.insert(command.end(), story.router.begin(), story.router.end());
  if (*story.scenario != '\0') {
    writeFile("/tmp/scenario.json", story.scenario);
    command.insert(command.end(), {"--scenario", "/tmp/scenario.json"});
  }
  return kit::Program(command, routerSettings(Clock::kReal));
}

constexpr char kPressPlug[] = R"([{"on": "add", "press": "metering-plug"}])";
constexpr char kPressSiren[] = R"([{"on": "add", "press": "siren"}])";
constexpr char kPressContact[] = R"([{"on": "zigbee-add", "press": "zb-contact"}])";
constexpr char kAddAndRemovePlug[] = R"([{"on": "add", "press": "metering-plug"},
                                         {"on": "remove", "press": "metering-plug"}])";
constexpr char kAddAndRemoveContact[] = R"([{"on": "zigbee-add", "press": "zb-contact"},
                                            {"on": "zigbee-remove", "press": "zb-contact"}])";
constexpr char kAddedPlug[] =
    "waiting answered reading found(MeterSwitch) added(MeterSwitch #1, MeterSwitch, Default) "
    "ended(done, none)";
constexpr char kAddedContact[] =
    "waiting answered reading found(ContactSwitch) "
    "added(ContactSwitch #1, ContactSwitch, Default) ended(done, none)";

const Story kAdds[] = {
    {"ZwaveDevice", {}, kPressPlug, {"add"}, {kAddedPlug}},
    {"ZigbeeDevice", {}, kPressContact, {"add"}, {kAddedContact}},
    {"DescribedTwice", {"--fault", "complete:twice"}, kPressContact, {"add"}, {kAddedContact}},
    {"NothingToChoose",
     {},
     kPressSiren,
     {"add"},
     {"waiting answered reading found(Siren) added(Siren #1, Siren, Default) ended(done, none)"}},
    {"GenericDevice",
     {},
     R"([{"on": "add", "press": "chime"}])",
     {"add"},
     {"waiting answered reading found(GenericDevice) added(GenericDevice #1, GenericDevice, Default) ended(done, "
      "none)"}},
    {"TypeNameAndPlace",
     {},
     kPressPlug,
     {"add,type=43,name=Washing machine,place=Bath"},
     {"waiting answered reading found(MeterSwitch) added(Washing machine, MultiSwitch, Bath) ended(done, none)"}},
    {"AnotherTypeTakesItsOwnName",
     {},
     kPressPlug,
     {"add,type=43,name=MeterSwitch #1"},
     {"waiting answered reading found(MeterSwitch) added(MultiSwitch #1, MultiSwitch, Default) ended(done, none)"}},
    {"BetterNameStays",
     {},
     R"([{"on": "zigbee-add", "press": "zb-tilt"}])",
     {"add"},
     {"waiting answered reading found(ContactSwitch) added(Tilt Sensor #1, ContactSwitch, Default) ended(done, none)"}},
    {"TypeThatItCannotBe",
     {},
     kPressPlug,
     {"add,type=1"},
     {"waiting answered reading found(MeterSwitch) refused(EINVAL) added(MeterSwitch #1, MeterSwitch, Default) "
      "ended(done, none)"}},
    {"NameWithoutRoom",
     {},
     kPressContact,
     {"add,name=0123456789012345678901234567890X"},
     {"waiting answered reading found(ContactSwitch) refused(EMSGSIZE) added(ContactSwitch #1, ContactSwitch, Default) "
      "ended(done, none)"}},
    {"NameWithControlCharacter",
     {},
     kPressContact,
     {"add,name=a\x1b[31mb"},
     {"waiting answered reading found(ContactSwitch) refused(EILSEQ) added(ContactSwitch #1, ContactSwitch, Default) "
      "ended(done, none)"}},
    {"PlaceThatIsNoUtf8",
     {},
     kPressContact,
     {"add,place=K\xfc"
      "che"},
     {"waiting answered reading found(ContactSwitch) refused(EILSEQ) added(ContactSwitch #1, ContactSwitch, Default) "
      "ended(done, none)"}},
    {"KnownAlready",
     {},
     R"([{"on": "add", "press": "metering-plug"}, {"on": "add", "press": "metering-plug"}])",
     {"add", "add"},
     {kAddedPlug, "waiting answered ended(failed, already-known)"}},
    {"ZigbeeDeviceKnownAlready",
     {},
     R"([{"on": "zigbee-add", "press": "zb-contact"}, {"on": "zigbee-add", "press": "zb-contact"}])",
     {"add,name=Door", "add,place=Bath", "devices"},
     {"waiting answered reading found(ContactSwitch) added(Door, ContactSwitch, Default) ended(done, none)",
      "waiting answered reading warning(already-known: Door) found(ContactSwitch) added(Door, ContactSwitch, Bath) "
      "ended(done, none)",
      "devices(Door;) ended(done, none)"}},
    {"KnownAndAddedAgain",
     {},
     R"([{"on": "add", "press": "metering-plug"}, {"on": "add", "press": "metering-plug"},
         {"on": "remove", "press": "metering-plug"}, {"on": "add", "press": "metering-plug"}])",
     {"add,name=Washer", "add-again,place=Bath"},
     {"waiting answered reading found(MeterSwitch) added(Washer, MeterSwitch, Default) ended(done, none)",
      "waiting answered warning(already-known: Washer) waiting removing(Washer) removed(Washer) waiting answered "
      "reading "
      "found(MeterSwitch) added(Washer, MeterSwitch, Bath) ended(done, none)"}},
    {"AddedAgainWithAnotherName",
     {},
     R"([{"on": "add", "press": "metering-plug"}, {"on": "add", "press": "metering-plug"},
         {"on": "remove", "press": "metering-plug"}, {"on": "add", "press": "metering-plug"}])",
     {"add,name=Washer", "add-again,name=Dryer,type=43"},
     {"waiting answered reading found(MeterSwitch) added(Washer, MeterSwitch, Default) ended(done, none)",
      "waiting answered warning(already-known: Washer) waiting removing(Washer) removed(Washer) waiting answered "
      "reading "
      "found(MeterSwitch) added(Dryer, MultiSwitch, Default) ended(done, none)"}},
    {"NotKnownAndAddedAgain", {}, kPressPlug, {"add-again"}, {kAddedPlug}},
    {"AnotherLeavesThanTheKnownOne",
     {},
     R"([{"on": "add", "press": "metering-plug"}, {"on": "add", "press": "siren"}, {"on": "add", "press": "siren"},
         {"on": "remove", "press": "metering-plug"}])",
     {"add", "add", "add-again"},
     {kAddedPlug, "waiting answered reading found(Siren) added(Siren #2, Siren, Default) ended(done, none)",
      "waiting answered warning(already-known: Siren #2) waiting removing(MeterSwitch #1) removed(MeterSwitch #1) "
      "ended(failed, other-left)"}},
    {"NobodyPressesSoThatTheKnownOneLeaves",
     {},
     R"([{"on": "add", "press": "siren"}, {"on": "add", "press": "siren"}])",
     {"add", "add-again"},
     {"waiting answered reading found(Siren) added(Siren #1, Siren, Default) ended(done, none)",
      "waiting answered warning(already-known: Siren #1) waiting ended(timed-out, nobody-pressed)"},
     Clock::kFast},
    {"NobodyPressesToAddItAgain",
     {},
     R"([{"on": "add", "press": "siren"}, {"on": "add", "press": "siren"}, {"on": "remove", "press": "siren"}])",
     {"add", "add-again"},
     {"waiting answered reading found(Siren) added(Siren #1, Siren, Default) ended(done, none)",
      "waiting answered warning(already-known: Siren #1) waiting removing(Siren #1) removed(Siren #1) waiting "
      "warning(left: Siren #1) "
      "ended(timed-out, nobody-pressed)"},
     Clock::kFast},
    {"NobodyPresses", {}, "", {"add"}, {"waiting ended(timed-out, nobody-pressed)"}, Clock::kFast},
    {"SilentBeforeItsIdentity",
     {"--fault", "identity:silence"},
     kPressPlug,
     {"add"},
     {"waiting answered ended(timed-out, device-silent)"},
     Clock::kFast},
    {"SilentBeforeItsDescription",
     {"--fault", "info:silence"},
     kPressPlug,
     {"add"},
     {"waiting answered reading ended(timed-out, device-silent)"},
     Clock::kFast},
    {"ZigbeeSilentBeforeItsDescription",
     {"--fault", "complete:silence"},
     kPressContact,
     {"add"},
     {"waiting answered reading ended(timed-out, device-silent)"},
     Clock::kFast},
    {"ZwaveRadioFails", {}, R"([{"on": "add", "fail": "zwave"}])", {"add"}, {"waiting ended(failed, radio-failed)"}},
    {"ZigbeeRadioFails",
     {},
     R"([{"on": "zigbee-add", "fail": "zigbee"}])",
     {"add"},
     {"waiting ended(failed, radio-failed)"}},
    {"ZigbeeRadioGivesUpWithoutAWord",
     {"--fault", "getting:code=9"},
     kPressContact,
     {"add"},
     {"waiting answered ended(failed, radio-failed)"}},
    {"FitsNoKind",
     {},
     R"([{"on": "zigbee-add", "press": "zb-ac-plug-mute"}])",
     {"add"},
     {"waiting answered reading ended(failed, unknown-kind)"}},
    {"ChosenTooLate",
     {},
     kPressPlug,
     {"add,slow"},
     {"waiting answered reading found(MeterSwitch) ended(timed-out, choice-too-slow)"},
     Clock::kFast},
    {"StoredElsewhere",
     {"--db", "/tmp/other"},
     kPressPlug,
     {"add"},
     {"waiting answered reading found(MeterSwitch) ended(failed, not-stored)"}},
    {"CancelledAtTheButton", {}, "", {"add,cancel=waiting"}, {"waiting ended(cancelled, cancelled)"}},
    {"CancelledAtTheIdentity",
     {"--fault", "identity:late=100000"},
     kPressPlug,
     {"add,cancel=answered"},
     {"waiting answered ended(cancelled, cancelled-joined)"}},
    {"CancelledAtTheDescription",
     {"--fault", "info:late=100000"},
     kPressPlug,
     {"add,cancel=reading"},
     {"waiting answered reading ended(cancelled, cancelled-joined)"}},
    {"CancelledAtTheChoice",
     {},
     kPressPlug,
     {"add,cancel=found"},
     {"waiting answered reading found(MeterSwitch) ended(cancelled, cancelled-joined)"}},
    {"CancelledWhenTheHaServerHasTheDevice",
     {"--db", "/tmp/other"},
     kPressPlug,
     {"add,cancel=/tmp/other"},
     {"waiting answered reading found(MeterSwitch) ended(cancelled, cancelled-late)"}},
    {"OneRadioOnly",
     {},
     R"([{"at": 0, "kill": "zigbee"}, {"on": "add", "press": "metering-plug"}])",
     {"add"},
     {"warning(one-radio-server) " + std::string(kAddedPlug)}},
};

const Story kOthers[] = {
    {"RemovesAZwaveDevice",
     {},
     kAddAndRemovePlug,
     {"add", "remove"},
     {kAddedPlug, "waiting removing(MeterSwitch #1) removed(MeterSwitch #1) ended(done, none)"}},
    {"RemovesAZigbeeDevice",
     {},
     kAddAndRemoveContact,
     {"add", "remove"},
     {kAddedContact, "waiting removing(ContactSwitch #1) removed(ContactSwitch #1) ended(done, none)"}},
    {"RemovesWithoutConfirmation",
     {"--fault", "closing:lost"},
     kAddAndRemovePlug,
     {"add", "remove"},
     {kAddedPlug, "waiting removing(MeterSwitch #1) removed(MeterSwitch #1) ended(done, none)"},
     Clock::kFast},
    {"RemovesAStranger",
     {"--fault", "removed:code=77"},
     kAddAndRemovePlug,
     {"add", "remove"},
     {kAddedPlug, "waiting ended(failed, not-in-list)"}},
    {"RemovingRadioFails",
     {},
     R"([{"on": "remove", "fail": "zwave"}])",
     {"remove"},
     {"waiting ended(failed, radio-failed)"}},
    {"RemovesANodeOfAnotherNetwork",
     {},
     R"([{"on": "remove", "press": "metering-plug"}])",
     {"remove"},
     {"waiting ended(failed, not-in-list)"}},
    {"TakesAStrangerOut",
     {},
     R"([{"on": "add", "press": "metering-plug"}, {"on": "remove", "press": "metering-plug"}])",
     {"add,cancel=found", "take-out"},
     {"waiting answered reading found(MeterSwitch) ended(cancelled, cancelled-joined)", "waiting ended(done, none)"}},
    {"TakesAListedDeviceOut",
     {},
     kAddAndRemovePlug,
     {"add", "take-out"},
     {kAddedPlug, "waiting removing(MeterSwitch #1) removed(MeterSwitch #1) ended(failed, other-left)"}},
    {"TakesNothingOut",
     {},
     R"([{"on": "remove", "fail": "zwave"}])",
     {"take-out"},
     {"waiting ended(failed, radio-failed)"}},
    {"EmptiesTheList",
     {},
     kPressPlug,
     {"add", "reset,what=4"},
     {kAddedPlug, "step removed(MeterSwitch #1) ended(done, none)"},
     Clock::kFast},
    {"EmptiesNoListOfARadioThatIsGone",
     {},
     R"([{"on": "add", "press": "metering-plug"}, {"on": "added", "kill": "zwave"}])",
     {"add", "reset,what=4"},
     {kAddedPlug, "warning(one-radio-server) ended(failed, no-server)"},
     Clock::kFast},
    {"DoesNotEmptyTheListOfAnotherFile",
     {},
     kPressPlug,
     {"add", "reset,what=2"},
     {kAddedPlug, "step ended(done, none)"},
     Clock::kFast},
    {"NobodyPressesToRemove", {}, "", {"remove"}, {"waiting ended(timed-out, nobody-pressed)"}, Clock::kFast},
    {"RemovalCancelled", {}, "", {"remove,cancel=waiting"}, {"waiting ended(cancelled, cancelled)"}},
    {"RemovalCancelledWhileTheDeviceLeaves",
     {"--fault", "closing:lost"},
     kAddAndRemovePlug,
     {"add", "remove,cancel=removing"},
     {kAddedPlug, "waiting removing(MeterSwitch #1) removed(MeterSwitch #1) ended(cancelled, cancelled-late)"}},
    {"RefreshCancelled",
     {"--fault", "hue:silence"},
     "",
     {with("hue-refresh,cancel=waiting", kMac)},
     {"waiting ended(cancelled, cancelled-late)"}},
    {"SearchCancelled",
     {"--fault", "hue:silence"},
     "",
     {"hue-discover,cancel=waiting"},
     {"waiting ended(cancelled, cancelled)"}},
    {"UnlinkingCancelled",
     {"--fault", "nest:silence"},
     "",
     {"nest-unlink,cancel=waiting"},
     {"waiting ended(cancelled, cancelled-late)"}},
    {"Resets",
     {},
     "",
     {"reset,what=1", "reset,what=2", "reset,what=3", "reset,what=4"},
     {"step ended(done, none)", "step ended(done, none)", "step ended(done, none)", "step ended(done, none)"},
     Clock::kFast},
    {"ResetOfNothing", {}, "", {"reset,what=0", "reset,what=5"}, {"refused(EINVAL) refused(EINVAL)"}},
    {"BridgeFromStartToEnd",
     {},
     R"([{"on": "hue-add", "press": "hue-button"}])",
     {"hue-discover", with("hue-add-bridge", kMac), "hue-list", with("hue-add-bulb,text=Lamp", kMac),
      with("hue-refresh", kMac), with("hue-remove", kMac), "hue-list"},
     {"waiting bridges(1) ended(done, none)", "waiting link-button bridge-linked ended(done, none)",
      "bridges(1) ended(done, none)", "waiting bulb-added ended(done, none)", "waiting ended(done, none)",
      "waiting ended(done, none)", "bridges(0) ended(done, none)"}},
    {"BridgeOfAWebServer",
     {},
     R"([{"on": "hue-add", "press": "hue-button"}])",
     {"hue-discover", with("hue-add-bridge", kMac), "hue-list"},
     {"waiting bridges(1) ended(done, none)", "waiting link-button bridge-linked ended(done, none)",
      "bridges(1) ended(done, none)"},
     Clock::kReal,
     "1"},
    {"NoBridge",
     {"--bridges", "0"},
     "",
     {"hue-discover", with("hue-add-bridge", kMac)},
     {"waiting bridges(0) ended(done, none)", "waiting link-button ended(failed, no-bridge)"}},
    {"ManyBridges", {"--bridges", "30"}, "", {"hue-discover"}, {"waiting bridges(25) ended(done, none)"}},
    {"ButtonPressedAtTheSecondAsking",
     {"--fault", "hue:code=4"},
     R"([{"on": "hue-add", "press": "hue-button"}])",
     {with("hue-add-bridge", kMac)},
     {"waiting link-button bridge-linked ended(done, none)"}},
    {"BulbOfAnUnknownBridge",
     {},
     "",
     {with("hue-add-bulb,text=Lamp", kMac)},
     {"waiting ended(failed, unknown-bridge)"}},
    {"HueServerFails",
     {"--fault", "hue:code=1"},
     "",
     {with("hue-refresh", kMac)},
     {"waiting ended(failed, hue-failed)"}},
    {"HueServerAnswersSomethingElse",
     {"--fault", "hue:code=6"},
     "",
     {with("hue-refresh", kMac)},
     {"waiting ended(failed, other-answer)"}},
    {"HueServerIsSilent",
     {"--fault", "hue:silence"},
     "",
     {with("hue-refresh", kMac)},
     {"waiting ended(timed-out, no-answer)"},
     Clock::kFast},
    {"BridgeThatIsNone",
     {},
     "",
     {"hue-remove,mac=02:a1", "hue-remove", with("hue-add-bulb", kMac),
      with("hue-refresh,text=01234567890123456789012345678901234567890123456789", kMac)},
     {"refused(EINVAL) refused(EINVAL) refused(EINVAL) refused(EMSGSIZE)"}},
    {"DeviceList",
     {},
     kPressPlug,
     {"devices", "add", "devices"},
     {"devices() ended(done, none)", kAddedPlug, "devices(MeterSwitch #1;) ended(done, none)"}},
    {"NestAccount",
     {},
     "",
     {"nest-status", "nest-link,text=code", "nest-status", "nest-unlink", "nest-status"},
     {"account(not linked) ended(done, none)", "waiting account(linked) ended(done, none)",
      "account(linked) ended(done, none)", "waiting account(not linked) ended(done, none)",
      "account(not linked) ended(done, none)"}},
    {"NestServerRefuses",
     {},
     R"([{"on": "nest-link", "answer": "nest 124 -1"}])",
     {"nest-link,text=code"},
     {"waiting ended(failed, nest-refused)"}},
    {"NestServerAnswersWhatNobodyKnows",
     {"--fault", "nest:code=99"},
     "",
     {"nest-link,text=code"},
     {"waiting ended(failed, other-answer)"}},
    {"NestServerAnswersAWebServerWhatNobodyKnows",
     {"--fault", "nest:code=99"},
     "",
     {"nest-link,text=code"},
     {"waiting ended(failed, other-answer)"},
     Clock::kReal,
     "1"},
    {"NestServerIsSilent",
     {"--fault", "nest:silence"},
     "",
     {"nest-unlink"},
     {"waiting ended(timed-out, no-answer)"},
     Clock::kFast},
    {"CodeThatIsNone", {}, "", {"nest-link"}, {"refused(EINVAL)"}},
};

class Operations : public testing::TestWithParam<Story> {};

TEST_P(Operations, TellWhatHappens) {
  const Story& story = GetParam();
  kit::Program router = simulator(story);
  router.waitFor("tembra-sim: ready");
  const Ended ended = drive(story.tasks, story.clock, story.role);
  EXPECT_EQ(ended.status, 0) << ended.errors;
  EXPECT_EQ(heardIn(ended.output), story.heard);
  router.signal(SIGTERM);
  EXPECT_EQ(router.end().status, 0);
}

INSTANTIATE_TEST_SUITE_P(Adds, Operations, testing::ValuesIn(kAdds), [](const auto& test) { return test.param.name; });
INSTANTIATE_TEST_SUITE_P(Others, Operations, testing::ValuesIn(kOthers),
                         [](const auto& test) { return test.param.name; });

/// The state that was told last in this phase; null: none was.
Json stateIn(const std::string& output, const std::string& phase) {
  Json last;
  std::istringstream lines(output);
  for (std::string line; std::getline(lines, line);) {
    const Json object = Json::parse(line);
    if (object.contains("state") && object.at("state").at("phase") == phase) last = object.at("state");
  }
  return last;
}

/// The states of tasks beside a router of this story.
std::string statesOf(const Story& story) {
  kit::Program router = simulator(story);
  router.waitFor("tembra-sim: ready");
  std::string states = drive(story.tasks, story.clock).output;
  router.signal(SIGTERM);
  EXPECT_EQ(router.end().status, 0);
  return states;
}

// The HA server stores the device where the kit does not look: the kit waits for it.
TEST(State, NamesTheDeviceThatWaitsAndIsStored) {
  statesOf({"", {}, kPressContact, {"add"}, {}});  // the number of the next one is 2
  const std::string told = statesOf({"", {"--db", "/tmp/other"}, kPressPlug, {"add,name=Lamp"}, {}, Clock::kFast});
  EXPECT_FALSE(stateIn(told, "button").contains("device"));
  EXPECT_FALSE(stateIn(told, "description").contains("device"));
  EXPECT_EQ(stateIn(told, "choice").at("device"), Json({{"id", 2}, {"name", "MeterSwitch #2"}}));
  const Json storing = stateIn(told, "storing");
  EXPECT_EQ(storing.at("device"), Json({{"id", 2}, {"name", "Lamp"}}));
  EXPECT_GT(storing.at("ends_in_ms"), 0);
  EXPECT_LE(storing.at("ends_in_ms"), 5000);
}

// The phases last 0.2 s, so that the driver sees each.
TEST(State, NamesTheDeviceThatIsToLeaveAndLeaves) {
  const std::string told =
      statesOf({"",
                {"--fault", "closing:late=4000"},
                R"([{"on": "add", "press": "metering-plug"}, {"on": "add", "press": "metering-plug"},
                                         {"on": "remove", "after": 4, "press": "metering-plug"},
                                         {"on": "add", "press": "metering-plug"}])",
                {"add,name=Washer", "add-again"},
                {}});
  const Json washer = {{"id", 1}, {"name", "Washer"}};
  EXPECT_EQ(stateIn(told, "leave-button").at("device"), washer);
  EXPECT_EQ(stateIn(told, "leaving").at("device"), washer);
  EXPECT_FALSE(stateIn(told, "button").contains("device")) << "another device may answer now";
}

std::vector<std::string> heardWithoutRouter(const std::string& task) { return heardIn(drive({task}).output); }

using Heard = std::vector<std::string>;

TEST(OperationsWithoutARouter, EndAtOnce) {
  EXPECT_EQ(heardWithoutRouter("add"), Heard{"ended(failed, no-radio-server)"});
  EXPECT_EQ(heardWithoutRouter("reset,what=2"), Heard{"ended(failed, no-server)"});
  EXPECT_EQ(heardWithoutRouter("hue-discover"), Heard{"ended(failed, no-server)"});
  EXPECT_EQ(heardWithoutRouter("nest-unlink"), Heard{"ended(failed, no-server)"});
}

TEST(OperationsWithoutAnHaServer, EndAtOnce) {
  const UdpListener zwave("127.255.255.254", 8888);
  const ZigbeeListener zigbee;
  EXPECT_EQ(heardWithoutRouter("add"), Heard{"ended(failed, no-server)"});
  EXPECT_EQ(heardWithoutRouter("remove"), Heard{"ended(failed, no-server)"});
  EXPECT_EQ(heardWithoutRouter("reset,what=4"), Heard{"ended(failed, no-server)"});
}

TEST(ResetThatIsCancelled, IsSentWholeAllTheSame) {
  kit::Program router = simulator({"", {"--timeline"}, "", {}, {}});
  router.waitFor("tembra-sim: ready");
  const std::string heard = drive({"reset,what=3,cancel=step"}, Clock::kFast).output;
  EXPECT_NE(heard.find(R"("reason":"cancelled-late")"), std::string::npos) << heard;
  router.signal(SIGTERM);
  const std::string told = router.end().output;
  for (const char* half :
       {"ZigBee server   reset, first half", "ZigBee server   reset, second half", "Z-Wave server   reset"})
    EXPECT_NE(told.find(half), std::string::npos) << half << "\n" << told;
}

class OperationsInTrouble : public testing::Test {
 protected:
  OperationsInTrouble() { router_.waitFor("tembra-sim: ready"); }
  kit::Program router_ = simulator({"", {}, "", {}, {}});
};

TEST_F(OperationsInTrouble, SayThatTheConnectionIsInUse) {
  const UdpListener other("127.255.255.4", 8888);
  EXPECT_EQ(heardWithoutRouter("add"), Heard{"ended(failed, in-use)"});
}

TEST_F(OperationsInTrouble, LeaveADeviceListAloneThatCannotBeRead) {
  std::filesystem::remove(kDatabase);
  std::filesystem::create_directory(kDatabase);
  EXPECT_EQ(heardWithoutRouter("add"), Heard{"ended(failed, database-unreadable)"});
  EXPECT_EQ(heardWithoutRouter("hue-list"), Heard{"ended(failed, database-unreadable)"});
  EXPECT_EQ(heardWithoutRouter("devices"), Heard{"ended(failed, database-unreadable)"});
  EXPECT_EQ(heardWithoutRouter("reset,what=4"), Heard{"ended(failed, database-unreadable)"});
  EXPECT_TRUE(std::filesystem::is_directory(kDatabase));
}

TEST_F(OperationsInTrouble, WarnOfADamagedDeviceList) {
  writeFile(kDatabase, healthyDatabase().substr(0, 3000));
  EXPECT_EQ(heardWithoutRouter("remove,cancel=waiting"),
            Heard{"warning(database-damaged) waiting ended(cancelled, cancelled)"});
  EXPECT_EQ(heardWithoutRouter("devices"), Heard{"ended(failed, database-damaged)"});
}

}  // namespace
}  // namespace tembra::test
