// The real program against the simulated daemons, well and with each of their faults, and against the daemon in Python.
#include <gtest/gtest.h>
#include <sys/socket.h>

#include <cctype>
#include <chrono>
#include <fstream>
#include <iterator>
#include <ostream>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "kit/program.h"
#include "sim/core/sockets.h"
#include "support/caller.h"
#include "support/running_sim.h"

namespace tembra::daemon_check {
namespace {

using sim::test::RunningSim;

kit::Ended check(const std::string& server, const std::string& speed, const std::string& label) {
  const std::string press = std::string(TEMBRA_SIM_PROGRAM " press ") + label + " >/dev/null";
  return kit::Program({TEMBRA_DAEMON_CHECK_PROGRAM, server, "--reset", "--speed", speed, "--press", press}).end();
}

const char* buttonOf(const std::string& server) {
  if (server == "zwave") return "metering-plug";
  return server == "zigbee" ? "zb-plug" : "hue-button";
}

class DaemonCheckOf : public testing::TestWithParam<const char*> {};

TEST_P(DaemonCheckOf, AHealthyDaemonFindsNothing) {
  RunningSim sim;
  const kit::Ended ended = check(GetParam(), "40", buttonOf(GetParam()));
  EXPECT_EQ(ended.status, 0) << ended.errors;
  EXPECT_EQ(ended.output.find("FAULT"), std::string::npos) << ended.output;
  EXPECT_NE(ended.output.find("No fault was found."), std::string::npos) << ended.output;
}

INSTANTIATE_TEST_SUITE_P(Servers, DaemonCheckOf, testing::Values("zwave", "zigbee", "hue", "nest"),
                         [](const auto& info) { return std::string(info.param); });

struct Sick {
  const char* server;
  const char* fault;
  const char* finding;
};

void PrintTo(const Sick& sick, std::ostream* stream) { *stream << sick.fault; }

// A node's first two answers are the same: the order of these two cannot be wrong. The last answer has none behind it
// to change places with.
std::vector<Sick> sickDaemons() {
  return {
      {"zwave", "joined:lost", "too late: the description did not come within 180 s"},
      {"zwave", "info:late=3600000", "too late: the description did not come within 180 s"},
      {"zwave", "info:twice", "says something after the last answer"},
      {"zwave", "identity:twice", "the description: the command classes have no end (0xFF)"},
      {"zwave", "joined:short=1", "wrong length: 1 bytes, not 1036"},
      {"zwave", "joined:code", "the node: the daemon says that it failed (node 255)"},
      {"zwave", "identity:code=7", "the identity: the node id changed from 2 to 7"},
      {"zwave", "info:code=0", "the description: node 0, which is no node"},
      {"zwave", "identity:silence", "too late: the identity did not come within 60 s"},
      {"zwave", "identity:reordered", "the description: the basic class is 0"},
      {"zwave", "info:foreign", "a datagram of somebody else, 127.0.0.66:8888"},
      {"zwave", "removed:lost", "too late: the closing answer did not come within 20 s"},
      {"zwave", "removed:code=9", "the node: the node id changed from 2 to 9"},
      {"zwave", "closing:silence", "too late: the closing answer did not come within 20 s"},
      {"zwave", "closing:twice", "says something after the last answer"},
      {"zwave", "reset:twice", "says something after the last answer"},
      {"zwave", "reset:code=7", "the answer: node 7 where node 0 is due"},
      {"zwave", "reset:short=1035", "wrong length: 1035 bytes, not 1036"},
      {"zigbee", "found:lost", "status 1: status 6 where 1 is due"},
      {"zigbee", "found:late=3600000", "too late: status 1 did not come within 180 s"},
      {"zigbee", "found:twice", "status 6: status 1 where 6 is due"},
      {"zigbee", "found:reordered", "status 1: status 6 where 1 is due"},
      {"zigbee", "getting:reordered", "status 6: status 10 where 6 is due"},
      {"zigbee", "complete:short=443", "wrong length: 443 bytes, not 444"},
      {"zigbee", "complete:code", "status 10: the daemon says that it failed (status 11)"},
      {"zigbee", "complete:code=5", "status 10: status 5 where 10 is due"},
      {"zigbee", "complete:twice", "says something after the last answer"},
      {"zigbee", "complete:silence", "too late: status 10 did not come within 180 s"},
      {"zigbee", "getting:foreign", "a datagram of somebody else, 127.0.0.66:8888"},
      {"zigbee", "left:lost", "too late: status 2 did not come within 180 s"},
      {"zigbee", "left:code", "status 2: the daemon says that it failed (status 12)"},
      {"hue", "bridges:lost", "too late: the list did not come within 180 s"},
      {"hue", "bridges:twice", "says something after the last answer"},
      {"hue", "bridges:short=8", "wrong length: 8 bytes, not 3260"},
      {"hue", "bridges:code=8", "the list: result 8 where 0 is due"},
      {"hue", "bridges:foreign", "a datagram of somebody else, 127.0.0.66:8888"},
      {"hue", "hue:code", "the result: result 1 where 2 is due"},
      {"hue", "hue:silence", "too late: the result did not come within 180 s"},
      {"nest", "nest:late=3600000", "too late: the answer did not come within 180 s"},
      {"nest", "nest:twice", "says something after the last answer"},
      {"nest", "nest:short=0", "wrong length: 0 bytes, not 12"},
      {"nest", "nest:code=99", "the answer: an answer without a meaning: 99"},
      {"nest", "nest:foreign", "a datagram of somebody else, 127.0.0.66:8888"},
  };
}

class SickDaemon : public testing::TestWithParam<Sick> {};

TEST_P(SickDaemon, IsFoundOut) {
  const Sick& sick = GetParam();
  RunningSim sim({"--fault", sick.fault});
  const bool isWaitedFor = std::string_view(sick.finding).starts_with("too late");
  const kit::Ended ended = check(sick.server, isWaitedFor ? "150" : "40", buttonOf(sick.server));
  EXPECT_EQ(ended.status, 1) << ended.errors;
  EXPECT_NE(ended.output.find(std::string("FAULT: ") + sick.finding), std::string::npos) << ended.output;
}

std::string sickName(const testing::TestParamInfo<Sick>& info) {
  std::string name = info.param.fault;
  for (char& letter : name) letter = std::isalnum(static_cast<unsigned char>(letter)) != 0 ? letter : '_';
  return name;
}

INSTANTIATE_TEST_SUITE_P(Faults, SickDaemon, testing::ValuesIn(sickDaemons()), sickName);

struct Endless {
  const char* name;
  bool fromTheStart;  ///< else from the press
  const char* finding;
};

void PrintTo(const Endless& endless, std::ostream* stream) { *stream << endless.name; }

class EndlessDaemon : public testing::TestWithParam<Endless> {};

// It says every 5 ms that it is still adding. Two seconds stand for the 900 of an exercise.
TEST_P(EndlessDaemon, IsGivenUp) {
  const Endless& endless = GetParam();
  RunningSim sim;
  kit::Program program({TEMBRA_DAEMON_CHECK_PROGRAM, "zigbee", "--speed", "450", "--press", "true"});
  if (!endless.fromTheStart) program.waitFor("cancel: good");
  const auto patience = std::chrono::steady_clock::now() + std::chrono::seconds(60);
  while (program.running() && std::chrono::steady_clock::now() < patience) {
    sim.tell("answer zigbee 3");
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
  ASSERT_FALSE(program.running()) << program.output();
  const kit::Ended ended = program.end();
  EXPECT_EQ(ended.status, 1) << ended.errors;
  EXPECT_NE(ended.output.find(endless.finding), std::string::npos) << ended.output;
}

constexpr Endless kEndless[] = {
    {"AfterACancel", true, "cancel: FAULT: no end: the daemon still speaks after 900 s"},
    {"WhileItAdds", false, "add: FAULT: no end: the daemon still speaks after 900 s"},
};

INSTANTIATE_TEST_SUITE_P(Daemons, EndlessDaemon, testing::ValuesIn(kEndless),
                         [](const auto& info) { return std::string(info.param.name); });

TEST(DaemonCheck, TellsTheSameFindingThreeTimesAndCountsAll) {
  const Descriptor stranger = sim::boundSocket(sim::kStranger);
  const sockaddr_in library = sim::addressOf(sim::kLibrary);
  kit::Program program({TEMBRA_DAEMON_CHECK_PROGRAM, "zigbee", "--speed", "450", "--press", "true"});
  while (program.running()) {
    sendto(stranger.get(), "", 1, 0, reinterpret_cast<const sockaddr*>(&library), sizeof library);
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
  const std::string output = program.end().output;
  std::size_t told = 0;
  for (std::size_t at = 0;
       (at = output.find("before a command: FAULT: a datagram of somebody else", at)) != std::string::npos;) {
    ++told;
    ++at;
  }
  EXPECT_EQ(told, 3U) << output;
  const std::size_t total = output.find("Faults found: ");
  ASSERT_NE(total, std::string::npos) << output;
  EXPECT_GT(std::stoi(output.substr(total + std::string_view("Faults found: ").size())), 5) << output;
}

TEST(DaemonCheck, SaysThatTheLibraryIsThere) {
  const sim::test::Caller library;
  const kit::Ended ended = check("nest", "40", "");
  EXPECT_EQ(ended.status, 3);
  EXPECT_EQ(ended.sentence(),
            "tembra-daemon-check: the library cannot be at 127.255.255.4:8888: "
            "Address already in use");
}

TEST(DaemonCheck, RefusesWhatItDoesNotKnow) {
  const kit::Ended refused = check("ha", "1", "");
  EXPECT_EQ(refused.status, 2);
  EXPECT_EQ(refused.errors.rfind("tembra-daemon-check: SERVER: ", 0), 0U) << refused.errors;
  EXPECT_EQ(check("zwave", "0", "").status, 2);
}

TEST(DaemonCheck, EndsWhenTheButtonCannotBePressed) {
  RunningSim sim;
  EXPECT_EQ(check("zwave", "40", "no-such-device 2>/dev/null").status, 3);
}

// Whether a process has the UDP address, which is given as the kernel writes it.
bool hasSocket(const std::string& address) {
  std::ifstream table("/proc/net/udp");
  const std::string text{std::istreambuf_iterator<char>(table), {}};
  return text.find(address) != std::string::npos;
}

// The daemon's buttons are a pipe of its own.
TEST(DaemonCheck, FindsNothingInTheDaemonOfTheExamples) {
  kit::Program daemon(
      {"/bin/sh", "-c", "mkfifo /tmp/buttons && exec " TEMBRA_PYTHON " -B " TEMBRA_RADIO_DAEMON " 0.1 <>/tmp/buttons"});
  while (!hasSocket("FEFFFF7F:22B8")) {
    ASSERT_TRUE(daemon.running()) << daemon.errors();
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
  const kit::Ended ended = kit::Program({TEMBRA_DAEMON_CHECK_PROGRAM, "zwave", "--reset", "--speed", "20", "--press",
                                         "echo plug >/tmp/buttons"})
                               .end();
  EXPECT_EQ(ended.status, 0) << ended.output << ended.errors;
}

}  // namespace
}  // namespace tembra::daemon_check
