// Commands to the Hue and the Nest server: the exact datagram, and what is marked before and after it is sent.
#include <gtest/gtest.h>

#include <cstring>
#include <functional>
#include <string>
#include <thread>
#include <utility>

#include "kit/router_test.h"
#include "wire.h"

using kit::Bytes;
using kit::lines;

namespace {

using IpCommandTest = kit::ConnectedTest;
using HueCommandTest = kit::ConnectedTest;
using NestCommandTest = kit::ConnectedTest;

char mac[] = "a1:b2:c3:0a:1b:2c";
char argument[] = "Lamp 7";
constexpr const char* kBridgeId = "a1b2c3fffe0a1b2c";

// Where the texts and the command stand.
constexpr std::size_t kSize = 304;
constexpr std::size_t kArgument = 120;
constexpr std::size_t kBridge = 170;
constexpr std::size_t kCommand = 220;

struct Command {
  const char* name;
  unsigned char* (*call)(TembraAssociation&);
  ServerType server;
  Bytes datagram;
  std::string commandType;  // afterwards

  [[nodiscard]] std::string send() const { return server == SERVER_HUE ? "send hue 304" : "send nest 256"; }
  [[nodiscard]] std::string stateAfter() const {
    return "state 5 idle 0 last 5 cancel 2 radio " + std::to_string(server) + " cmdtype " + commandType;
  }
};

Wire hue(int command) { return std::move(Wire(kSize).number(kCommand, command)); }
Wire nest(int command) { return std::move(Wire(256).number(4, command)); }

const Command kCommands[] = {
    {"initiateAdd", [](TembraAssociation& assoc) { return assoc.Hue_initiateAdd(); }, SERVER_HUE, hue(114).all(),
     "Before"},
    {"addBridge", [](TembraAssociation& assoc) { return assoc.Hue_addBridge(mac); }, SERVER_HUE,
     hue(100).text(kBridge, kBridgeId).all(), "AddIPDevice"},
    {"addDev", [](TembraAssociation& assoc) { return assoc.Hue_addDev(mac, argument); }, SERVER_HUE,
     hue(105).text(kArgument, argument).text(kBridge, kBridgeId).all(), "AddHueDevice"},
    {"refreshBridge", [](TembraAssociation& assoc) { return assoc.Hue_refreshBridge(mac, argument); }, SERVER_HUE,
     hue(106).text(kArgument, argument).text(kBridge, kBridgeId).all(), "RefreshIPDevice"},
    {"remove", [](TembraAssociation& assoc) { return assoc.Hue_remove(mac); }, SERVER_HUE,
     hue(109).text(kBridge, kBridgeId).all(), "RemoveIPDevice"},
    {"link", [](TembraAssociation& assoc) { return assoc.Nest_add(argument); }, SERVER_NEST,
     nest(100).text(8, argument).all(), "AddIPDevice"},
    {"unlink", [](TembraAssociation& assoc) { return assoc.Nest_remove(); }, SERVER_NEST, nest(109).all(),
     "RemoveIPDevice"},
};

void pretendAnOperation(TembraAssociation& assoc) {
  assoc.assocState = ZW_ASSOC_QUERY;
  assoc.lastEventCode = 5;
  assoc.cancelTarget = 2;
  assoc.activeRadio = 2;
  idle = 1;
  std::strcpy(cmdtype, "Before");
}

// What another thread finds in the command type as soon as it sees the mark. Nothing but the mark orders the two.
std::string commandTypeSeenWithTheMark(const std::function<void()>& operation) {
  unsigned char* mark = &idle;
  __atomic_store_n(mark, 1, __ATOMIC_RELEASE);
  std::string seen;
  std::thread poller([mark, &seen] {
    while (__atomic_load_n(mark, __ATOMIC_ACQUIRE) != 0) std::this_thread::yield();
    seen = cmdtype;
  });
  operation();
  poller.join();
  return seen;
}

}  // namespace

TEST_F(IpCommandTest, EachIsOneDatagramThenTheMarks) {
  for (const Command& command : kCommands) {
    SCOPED_TRACE(command.name);
    pretendAnOperation(assoc);
    EXPECT_EQ(command.call(assoc), &idle);
    EXPECT_EQ(router.takeTrace(), lines({command.send()})) << "nothing else, no log line either";
    const auto sends = router.takeSends();
    ASSERT_EQ(sends.size(), 1U);
    EXPECT_EQ(sends[0].bytes, command.datagram);
    kit::Peer& server = command.server == SERVER_HUE ? router.hue() : router.nest();
    EXPECT_EQ(server.receive(), command.datagram);
    const std::string marked = "state 5 idle 1 last 5 cancel 2 radio " + std::to_string(command.server);
    EXPECT_EQ(sends[0].state, marked + " cmdtype Before") << "the radio is marked first";
    EXPECT_EQ(router.state(), command.stateAfter());
  }
  EXPECT_EQ(std::size(kCommands), 7U);
}

TEST_F(HueCommandTest, TheSecondTextIsCutAtItsField) {
  for (const std::size_t length : {0U, 1U, 48U, 49U, 50U, 51U, 99U, 100U, 101U, 184U, 5000U}) {
    std::string text(length, 'x');
    assoc.Hue_addDev(mac, text.data());
    assoc.Hue_refreshBridge(mac, text.data());
    const auto sends = router.takeSends();
    ASSERT_EQ(sends.size(), 2U);
    Wire expected(kSize);
    expected.text(kArgument, text.substr(0, 49)).text(kBridge, kBridgeId);
    EXPECT_EQ(sends[0].bytes, expected.number(kCommand, 105).all()) << length;
    EXPECT_EQ(sends[1].bytes, expected.number(kCommand, 106).all()) << length;
  }
}

TEST_F(HueCommandTest, NoTextIsAnEmptyText) {
  assoc.Hue_addDev(mac, nullptr);
  assoc.Hue_refreshBridge(nullptr, nullptr);
  const auto sends = router.takeSends();
  ASSERT_EQ(sends.size(), 2U);
  EXPECT_EQ(sends[0].bytes, Wire(kSize).text(kBridge, kBridgeId).number(kCommand, 105).all());
  EXPECT_EQ(sends[1].bytes, Wire(kSize).number(kCommand, 106).all());
}

TEST_F(HueCommandTest, AMacTextOfAnotherFormIsConvertedAsItIs) {
  const struct {
    std::string text;
    std::string bridgeId;
  } cases[] = {
      {"A1-B2-C3-0A-1B-2C", "A1B2C3fffe0A1B2C"},
      {std::string(mac) + std::string(5000, 'x'), kBridgeId},
      {"a1:b2:c3:0a:1b", "a1b2c3fffe0a1b"},
      {"a1:b2:c3", "a1b2c3fffe"},
      {"a1:b2", "a1b2"},
      {"", ""},
  };
  for (auto row : cases) {
    assoc.Hue_addBridge(row.text.data());
    EXPECT_EQ(router.takeSends().at(0).bytes, Wire(kSize).text(kBridge, row.bridgeId).number(kCommand, 100).all())
        << row.text.substr(0, 20);
  }
}

TEST_F(IpCommandTest, WhoSeesTheMarkSeesTheCommandTypeToo) {
  for (int round = 0; round < 50; ++round) {
    for (const Command& command : kCommands) {
      if (command.commandType == "Before") continue;
      EXPECT_EQ(commandTypeSeenWithTheMark([&] { command.call(assoc); }), command.commandType);
    }
  }
}

// A daemon that answers while the command is still under way: the answer is handled when the command is done.
TEST_F(IpCommandTest, AFastAnswerComesAfterTheCommand) {
  for (int round = 0; round < 200; ++round) {
    std::thread daemon([this] {
      while (router.hue().receive().empty()) {
      }
      router.hue().post(hueAnswer(4));
    });
    assoc.Hue_addBridge(mac);
    daemon.join();
    router.settle();
    ASSERT_EQ(router.state(), "state 0 idle 1 last 0 cancel 0 radio 3 cmdtype AddIPDevice") << round;
    ASSERT_EQ(router.takeEvents().at(0).state, "state 0 idle 0 last 0 cancel 0 radio 3 cmdtype AddIPDevice");
  }
}

TEST_F(NestCommandTest, TheTextIsCutAtTheDatagram) {
  for (const std::size_t length : {0U, 1U, 246U, 247U, 248U, 249U, 5000U}) {
    std::string text(length, 'x');
    assoc.Nest_add(text.data());
    EXPECT_EQ(router.takeSends().at(0).bytes, Wire(256).number(4, 100).text(8, text.substr(0, 247)).all()) << length;
  }
  assoc.Nest_add(nullptr);
  EXPECT_EQ(router.takeSends().at(0).bytes, Wire(256).number(4, 100).all());
}
