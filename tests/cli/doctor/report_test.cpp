// The report of a router: what it holds, and what it must not tell.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <filesystem>
#include <map>
#include <nlohmann/json.hpp>

#include "doctor/broken_router.h"
#include "sim/support/recording_maker.h"
#include "support/files.h"
#include "support/terminal.h"

namespace tembra::test {
namespace {

constexpr char kReport[] = "/tmp/report.tar";
constexpr char kLog[] = "/tmp/log";
constexpr char kRecording[] = "/tmp/recording.pcapng";

// ---- What a tar file holds -----------------------------------------------------------------------------------------

/// By their names. The test fails where the header's sum is wrong.
std::map<std::string, std::string> partsOf(const std::string& tar) {
  constexpr std::size_t kBlock = 512;
  constexpr std::size_t kSizeAt = 124;
  constexpr std::size_t kSumAt = 148;
  std::map<std::string, std::string> parts;
  for (std::size_t at = 0; at + kBlock <= tar.size() && tar[at] != '\0';) {
    std::string header = tar.substr(at, kBlock);
    const std::size_t size = std::stoul(header.substr(kSizeAt, 11), nullptr, 8);
    const auto sum = std::stoull(header.substr(kSumAt, 7), nullptr, 8);
    header.replace(kSumAt, 8, 8, ' ');
    unsigned long long counted = 0;
    for (const char c : header) counted += static_cast<unsigned char>(c);
    EXPECT_EQ(counted, sum);
    parts[header.c_str()] = tar.substr(at + kBlock, size);
    at += kBlock + (size + kBlock - 1) / kBlock * kBlock;
  }
  return parts;
}

std::string hexadecimal(const std::string& bytes) {
  std::string text;
  for (const char c : bytes) {
    char pair[3];
    std::snprintf(pair, sizeof pair, "%02x", static_cast<unsigned char>(c));
    text += pair;
  }
  return text;
}

// The digits of the bytes that are the same wherever the text begins in what is encoded.
std::string base64(const std::string& bytes, std::size_t before) {
  constexpr char kDigits[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  const std::string padded = std::string(before, '\0') + bytes;
  std::string text;
  for (std::size_t i = 0; i + 3 <= padded.size(); i += 3) {
    const auto byte = [&](std::size_t at) { return unsigned{static_cast<unsigned char>(padded[at])}; };
    const unsigned triple = byte(i) << 16U | byte(i + 1) << 8U | byte(i + 2);
    for (const unsigned shift : {18U, 12U, 6U, 0U}) text += kDigits[triple >> shift & 63U];
  }
  return before == 0 ? text : text.substr(4);
}

std::string wide(const std::string& bytes, bool isBigEndian) {
  std::string text;
  for (const char c : bytes) text += isBigEndian ? std::string{'\0', c} : std::string{c, '\0'};
  return text;
}

std::string lower(std::string text) {
  std::ranges::transform(text, text.begin(), [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return text;
}

/// How a text may be hidden in a file; what can be compared of it.
std::vector<std::string> formsOf(const std::string& secret) {
  return {secret,
          hexadecimal(secret),
          base64(secret, 0),
          base64(secret, 1),
          base64(secret, 2),
          wide(secret, false),
          wide(secret, true)};
}

bool holds(const std::string& bytes, const std::string& secret) {
  const std::string small = lower(bytes);
  return std::ranges::any_of(formsOf(secret), [&](const std::string& form) {
    return form.size() >= 4 && (bytes.find(form) != std::string::npos || small.find(lower(form)) != std::string::npos);
  });
}

// ---- A home with secrets -------------------------------------------------------------------------------------------

constexpr char kPlug[] =
    "Grandma's K\xc3\xbc"
    "chenradio";
constexpr char kPlugPlace[] = "Heidelberg attic";
constexpr char kSensor[] = "Safe behind the mirror";
constexpr char kSensorPlace[] = "Otto's study";
constexpr char kBulb[] = "Nursery moon";
constexpr char kCode[] = "zq71-home-code";
constexpr char kBridgeId[] = "02a1b2fffe0c0001";
constexpr char kMac[] = "02:a1:b2:0c:00:01";
const std::string kMacBytes("\x02\xa1\xb2\x0c\x00\x01", 6);

kit::Settings logged() {
  kit::Settings settings = wellSettings();
  settings["TEMBRA_LOG"] = kLog;
  settings["TEMBRA_LOG_LEVEL"] = "detail";
  return settings;
}

kit::Ended run(const std::vector<std::string>& arguments) { return Program(assocCommand(arguments), logged()).end(); }

/// Devices of every kind were added, with a recording and a log; a front end has removed one and has the connection.
class Home {
 public:
  Home() {
    add("metering-plug", {"add", "--yes", "--name", kPlug, "--place", kPlugPlace});
    add("zb-contact", {"add", "--yes", "--name", kSensor, "--place", kSensorPlace});
    EXPECT_EQ(Program({TEMBRA_SIM_PROGRAM, "press", "hue-button"}).end().status, 0);
    EXPECT_EQ(run({"hue", "add", kMac}).status, 0);
    EXPECT_EQ(run({"hue", "add-bulb", kMac, kBulb}).status, 0);
    EXPECT_EQ(run({"nest", "link", kCode}).status, 0);
    user_ = storedUser();
    const std::vector<std::string> command = {
        TEMBRA_HOLDER_PROGRAM, kSocket, "kiosk", "--keep-open", "hue-list", "remove", "add"};
    holder_ = std::make_unique<Program>(command, logged());
    router_.pressOnRemove("metering-plug");
    holder_->waitForAll({R"("event":"ended")", R"("event":"waiting")"});
    holder_->waitFor(R"("operation":"add")");
  }

  /// Each as a person would search for it.
  [[nodiscard]] std::vector<std::string> secrets() const {
    return {"Grandma",
            "chenradio",
            "Heidelberg",
            "attic",
            "Safe behind",
            "mirror",
            "Otto",
            "study",
            "Nursery",
            "moon",
            "zq71",
            "home-code",
            kMac,
            kBridgeId,
            user_,
            kMacBytes,
            reversed(kMacBytes),
            "01:00:0c:b2:a1:02",
            "02-a1-b2-0c-00-01",
            "02a1b20c0001"};
  }

  /// Those of them that stand in the recording, the log or the device list.
  [[nodiscard]] std::vector<std::string> written() const {
    return {kPlugPlace, kSensor, kSensorPlace, kBulb, kCode, kMac, kBridgeId, user_};
  }

 private:
  static constexpr char kSocket[] = "/tmp/front-ends/socket";

  static std::string reversed(std::string text) {
    std::ranges::reverse(text);
    return text;
  }

  static std::string storedUser() {
    for (const auto& [key, value] : Database().all()) {
      if (key.ends_with(".9")) return value.c_str() + offsetof(IndexRecord, value);
    }
    return "";
  }

  void add(const std::string& device, const std::vector<std::string>& arguments) {
    Program program(assocCommand(arguments), logged());
    router_.pressOnAdd(device);
    const kit::Ended ended = program.end();
    EXPECT_EQ(ended.status, 0) << ended.errors;
  }

  SimRouter router_{{"--record", kRecording}};
  std::unique_ptr<Program> holder_;
  std::string user_;
};

std::string report(std::vector<std::string> options) {
  options.insert(options.begin(), {"report", kReport, "--recording", kRecording});
  const kit::Ended ended = run(options);
  EXPECT_EQ(ended.status, 0) << ended.errors;
  return readFile(kReport);
}

// ---- The tests -----------------------------------------------------------------------------------------------------

TEST(Report, TellsNoSecretInAnyForm) {
  const Home home;
  const std::string tar = report({});
  const auto parts = partsOf(tar);
  for (const char* name : {"README.txt", "doctor.jsonl", "devices.jsonl", "versions.txt", "configuration.txt",
                           "history.jsonl", "log.txt", "recording.pcapng"}) {
    EXPECT_TRUE(parts.contains(name)) << name;
  }
  for (const std::string& secret : home.secrets()) {
    for (const auto& [name, content] : parts) EXPECT_FALSE(holds(content, secret)) << secret << " in " << name;
    EXPECT_FALSE(holds(tar, secret)) << secret;
  }
}

// Else the test above could not fail.
TEST(Report, TellsEverythingWithNames) {
  const Home home;
  const auto parts = partsOf(report({"--with-names"}));
  std::string all;
  for (const auto& [name, content] : parts) all += content;
  for (const std::string& text : home.written()) EXPECT_NE(all.find(text), std::string::npos) << text;
  EXPECT_NE(parts.at("log.txt").find(kPlug), std::string::npos);
  EXPECT_NE(parts.at("history.jsonl").find("chenradio"), std::string::npos);
  EXPECT_NE(parts.at("recording.pcapng").find(kCode), std::string::npos);
  EXPECT_EQ(parts.at("recording.pcapng").size(), std::filesystem::file_size(kRecording));
}

// The same name has the same stand-in in the list, in the log and in a datagram.
TEST(Report, GivesANameOneStandIn) {
  const Home home;
  const auto parts = partsOf(report({}));
  std::string standIn;
  for (const std::string& line : kit::linesOf(parts.at("devices.jsonl"))) {
    const auto device = nlohmann::json::parse(line);
    if (device.contains("name") && device.at("type") != "HueLamp") standIn = device.at("name");
  }
  EXPECT_EQ(standIn.size(), std::strlen(kSensor));
  EXPECT_NE(parts.at("log.txt").find(standIn), std::string::npos) << standIn;
  EXPECT_NE(parts.at("recording.pcapng").find(standIn), std::string::npos) << standIn;
}

// A replay begins with these devices, which the recording tells in hexadecimal digits. The rest of their records is the
// HA server's own.
TEST(Report, KeepsTheFirstDatabaseOfARecordingWithStandIns) {
  Device sensor = Device(1, kSensor).zwave(5);
  std::strcpy(reinterpret_cast<char*>(sensor.record().at404), kSensorPlace);
  Database().put(sensor);
  Database().put("rooms", std::string(kPlugPlace));
  SimRouter router{{"--record", kRecording}};
  EXPECT_EQ(run({"hue", "discover"}).status, 0);
  router.stop();
  std::filesystem::remove("/tmp/ddb");  // the report learns the name from the recording
  const std::string recording = partsOf(report({})).at("recording.pcapng");
  for (const char* secret : {"mirror", "study", "attic"}) EXPECT_FALSE(holds(recording, secret)) << secret;
  writeFile("/tmp/reported.pcapng", recording);
  Program({TEMBRA_SIM_PROGRAM, "scenario", "/tmp/reported.pcapng", "--make-db", "/tmp/ddb"}).end();
  const std::string device = Database().all().at("1");
  EXPECT_EQ(std::strlen(&device.at(offsetof(DeviceRecord, name))), std::strlen(kSensor));
  std::filesystem::remove(kReport);
  EXPECT_TRUE(holds(partsOf(report({"--with-names"})).at("recording.pcapng"), "mirror"));
}

// tcpdump's recording of the loopback interface, on which another program talks, too.
TEST(Report, TakesTheSystemsOwnDatagramsOfAnyRecorder) {
  namespace maker = sim::test;
  constexpr std::uint32_t kPcap = 0xA1B2C3D4;
  constexpr std::uint16_t kRawIp = 101;
  std::string foreign = maker::ipv4("what another program says");
  for (const std::size_t end : {12U, 16U}) foreign.replace(end, 4, "\x7f\0\0\1", 4);
  writeFile(kRecording,
            maker::pcap(maker::Order::kBig, kPcap, kRawIp) + maker::pcapPacket(maker::Order::kBig, 1'000, 0, foreign) +
                maker::pcapPacket(maker::Order::kBig, 1'000, 5, maker::ipv4("what the Z-Wave server says")));
  const std::string recording = partsOf(report({})).at("recording.pcapng");
  EXPECT_TRUE(holds(recording, "what the Z-Wave server says"));
  EXPECT_FALSE(holds(recording, "what another program says"));
}

TEST(Report, SurvivesOddNames) {
  SimRouter router;
  const std::vector<std::string> names = {
      "TV", "event", "x\x1b[2J\"y\\", "finding", std::string(300, 'q'), "\xff\xfeKeller"};
  int id = 1;
  for (const std::string& name : names) Database().put(Device(id++, name).type("Sirene").zwave(5));
  EXPECT_EQ(run({"report", kReport}).status, 0);
  const auto parts = partsOf(readFile(kReport));
  for (const char* part : {"doctor.jsonl", "devices.jsonl"}) {
    for (const std::string& line : kit::linesOf(parts.at(part))) EXPECT_TRUE(nlohmann::json::accept(line)) << line;
    for (const char* text : {"TV", "2J", "qqqq", "Keller", "(event)", "(finding)"}) {
      EXPECT_EQ(parts.at(part).find(text), std::string::npos) << text << " in " << parts.at(part);
    }
  }
  EXPECT_NE(parts.at("doctor.jsonl").find(R"("event":"check")"), std::string::npos);
}

// These words stand in every report, which would become unreadable without them.
TEST(Report, KeepsItsOwnWordsWhereDevicesAreCalledSo) {
  SimRouter router;
  int id = 1;
  for (const char* name : {"1", "Z-Wave", "255", "router", "e"}) Database().put(Device(id++, name).zwave(5));
  EXPECT_EQ(run({"report", kReport}).status, 0);
  const auto parts = partsOf(readFile(kReport));
  const std::string& list = parts.at("devices.jsonl");
  for (const char* name : {"\"1\"", "\"Z-Wave\"", "\"255\"", "\"router\"", "\"e\""}) {
    EXPECT_EQ(list.find(std::string(R"("name":)") + name), std::string::npos) << name << " in " << list;
  }
  EXPECT_NE(list.find(R"("key":"1")"), std::string::npos) << list;
  EXPECT_NE(parts.at("configuration.txt").find("127.255.255.1:9999\n"), std::string::npos)
      << parts.at("configuration.txt");
  EXPECT_NE(parts.at("doctor.jsonl").find("Z-Wave server"), std::string::npos) << parts.at("doctor.jsonl");
}

// As a front end may log what the kit tells.
TEST(Report, KnowsTheEventsOfALog) {
  writeFile(
      "/tmp/events",
      R"(12:00:01 {"schema":1,"event":"added","id":3,"name":"Cellar","type":{"number":42,"name":"Siren"},"place":"Under Otto"})"
      "\n12:00:02 put Cellar under Under Otto\n");
  EXPECT_EQ(runAssoc({"report", kReport, "--log", "/tmp/events"}).status, 0);
  const std::string log = partsOf(readFile(kReport)).at("log.txt");
  EXPECT_EQ(log.find("Cellar"), std::string::npos) << log;
  EXPECT_EQ(log.find("Otto"), std::string::npos) << log;
  EXPECT_NE(log.find(R"("name":"Siren")"), std::string::npos) << log;
}

// In lines of other programs, and nowhere else.
TEST(Report, KnowsAddressesAndUsersInAnyWriting) {
  writeFile("/tmp/others",
            "12:00:01 dhcp only plain 3c22fbaabbcd, monotonic_us 864000000000\n"
            "12:00:02 switch 02A1.B20C.0009 on port 4\n"
            R"(12:00:03 bridge said [{"success":{"username":"Qx7Lk2"}}, {"success":{"username": "Rz9"}})");
  EXPECT_EQ(runAssoc({"report", kReport, "--log", "/tmp/others"}).status, 0);
  const std::string log = partsOf(readFile(kReport)).at("log.txt");
  for (const char* secret : {"3c22fbaabbcd", "02A1.B20C.0009", "Qx7Lk2", "Rz9"}) {
    EXPECT_EQ(log.find(secret), std::string::npos) << secret << " in " << log;
  }
  EXPECT_NE(log.find("monotonic_us 864000000000\n"), std::string::npos) << log;
  EXPECT_NE(log.find("on port 4\n"), std::string::npos) << log;
}

TEST(Report, OnlyListsWhenAskedTo) {
  const Ended listed = runAssoc({"report", kReport, "--list"});
  EXPECT_EQ(listed.status, 0) << listed.errors;
  EXPECT_NE(listed.output.find("doctor.jsonl ("), std::string::npos) << listed.output;
  EXPECT_FALSE(std::filesystem::exists(kReport));
}

TEST(Report, AsksAtATerminalBeforeItWrites) {
  Terminal refused(assocCommand({"report", kReport}));
  refused.waitFor("devices.jsonl (");
  refused.waitFor("Yes or no [y/N]");
  refused.type("n\r");
  EXPECT_EQ(refused.end(), 1);
  EXPECT_FALSE(std::filesystem::exists(kReport));
  Terminal agreed(assocCommand({"report", kReport}));
  agreed.waitFor("Yes or no [y/N]");
  agreed.type("y\r");
  EXPECT_EQ(agreed.end(), 0);
  EXPECT_FALSE(partsOf(readFile(kReport)).empty());
}

TEST(Report, AsksNothingWhereItCannotWrite) {
  writeFile(kReport, "another report");
  const std::pair<const char*, std::string> files[] = {{kReport, "File exists"},
                                                       {"/tmp/none/report", "No such file or directory"}};
  for (const auto& [file, why] : files) {
    Terminal terminal(assocCommand({"report", file}));
    EXPECT_EQ(terminal.end(), 1);
    EXPECT_NE(terminal.screen().find("cannot be written (" + why + ")."), std::string::npos);
    EXPECT_EQ(terminal.screen().find("Yes or no"), std::string::npos) << terminal.screen();
  }
  EXPECT_EQ(readFile(kReport), "another report");
}

// Nothing is sent, and nothing is lost.
TEST(Report, AsksOnlyAPersonAtATerminal) {
  for (const char* option : {"--yes", "--json"}) {
    Terminal terminal(assocCommand({"report", kReport, option}));
    EXPECT_EQ(terminal.end(), 0);
    EXPECT_TRUE(std::filesystem::remove(kReport)) << terminal.screen();
  }
}

TEST(Report, OverwritesNothingAndIsForItsUserOnly) {
  EXPECT_EQ(runAssoc({"report", kReport}).status, 0);
  struct stat status = {};
  EXPECT_EQ(stat(kReport, &status), 0);
  EXPECT_EQ(status.st_mode & 0777U, 0600U);
  const Ended again = runAssoc({"report", kReport});
  EXPECT_EQ(again.status, 1);
  EXPECT_EQ(again.sentence(), "tembra-assoc: /tmp/report.tar cannot be written (File exists).");
}

// Whatever it is, it is read to its end or refused, and nothing of it is told as it is.
TEST(Report, RefusesWhatIsNoRecording) {
  const std::string section(
      "\x0a\x0d\x0d\x0a\x1c\0\0\0\x4d\x3c\x2b\x1a\1\0\0\0\xff\xff\xff\xff\xff\xff\xff\xff\x1c\0\0\0", 28);
  for (const std::string& content :
       {std::string(), std::string("x"), std::string(5000, '\xff'), section.substr(0, 10)}) {
    writeFile("/tmp/none.pcapng", content);
    const Ended ended = runAssoc({"report", kReport, "--recording", "/tmp/none.pcapng"});
    EXPECT_EQ(ended.status, 1) << ended.output;
    EXPECT_FALSE(std::filesystem::exists(kReport));
  }
  writeFile("/tmp/none.pcapng", section + std::string(3, '\xff'));
  const Ended cut = runAssoc({"report", kReport, "--recording", "/tmp/none.pcapng"});
  EXPECT_EQ(cut.status, 0);
  EXPECT_EQ(cut.sentence(),
            "tembra-assoc: /tmp/none.pcapng was cut off: it ends in the middle of a packet. What stands before is put "
            "in.");
  EXPECT_NE(cut.output.find("datagrams of a recording that was cut off"), std::string::npos) << cut.output;
}

}  // namespace
}  // namespace tembra::test
