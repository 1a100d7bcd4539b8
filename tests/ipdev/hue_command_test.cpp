// Commands to the Hue server: the exact datagram, and what is marked before and after it is sent.
#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>
#include <functional>
#include <string>

#include "kit/router.h"
#include "wire.h"

using kit::Bytes;
using kit::lines;
using kit::Router;

namespace {

char mac[] = "a1:b2:c3:0a:1b:2c";
char argument[] = "Lamp 7";
constexpr const char* kBridgeId = "a1b2c3fffe0a1b2c";

// Where the texts and the command stand.
constexpr std::size_t kSize = 304;
constexpr std::size_t kArgument = 120;
constexpr std::size_t kBridge = 170;
constexpr std::size_t kCommand = 220;

using Operation = std::function<unsigned char*(TembraAssociation&)>;

struct Command {
  const char* name;
  Operation call;
  Bytes datagram;
  const char* commandType;  // afterwards
};

const Command kCommands[] = {
    {"initiateAdd", [](TembraAssociation& assoc) { return assoc.Hue_initiateAdd(); },
     Wire(kSize).number(kCommand, 114).all(), "Before"},
    {"addBridge", [](TembraAssociation& assoc) { return assoc.Hue_addBridge(mac); },
     Wire(kSize).text(kBridge, kBridgeId).number(kCommand, 100).all(), "AddIPDevice"},
    {"addDev", [](TembraAssociation& assoc) { return assoc.Hue_addDev(mac, argument); },
     Wire(kSize).text(kArgument, argument).text(kBridge, kBridgeId).number(kCommand, 105).all(), "AddHueDevice"},
    {"refreshBridge", [](TembraAssociation& assoc) { return assoc.Hue_refreshBridge(mac, argument); },
     Wire(kSize).text(kArgument, argument).text(kBridge, kBridgeId).number(kCommand, 106).all(), "RefreshIPDevice"},
    {"remove", [](TembraAssociation& assoc) { return assoc.Hue_remove(mac); },
     Wire(kSize).text(kBridge, kBridgeId).number(kCommand, 109).all(), "RemoveIPDevice"},
};

void pretendAnOperation(TembraAssociation& assoc) {
  assoc.assocState = ZW_ASSOC_QUERY;
  assoc.lastEventCode = 5;
  assoc.cancelTarget = 2;
  assoc.activeRadio = 2;
  idle = 1;
  std::strcpy(cmdtype, "Before");
}

}  // namespace

TEST(HueCommandTest, EachIsOneDatagramThenTheMarks) {
  Router router;
  TembraAssociation& assoc = router.connect();
  for (const Command& command : kCommands) {
    SCOPED_TRACE(command.name);
    pretendAnOperation(assoc);
    EXPECT_EQ(command.call(assoc), &idle);
    EXPECT_EQ(router.takeTrace(), lines({"send hue 304"})) << "nothing else, no log line either";
    const auto sends = router.takeSends();
    ASSERT_EQ(sends.size(), 1U);
    EXPECT_EQ(sends[0].bytes, command.datagram);
    EXPECT_EQ(router.hue().receive(), command.datagram);
    EXPECT_EQ(sends[0].state, "state 5 idle 1 last 5 cancel 2 radio 3 cmdtype Before") << "the radio is marked first";
    EXPECT_EQ(router.state(), std::string("state 5 idle 0 last 5 cancel 2 radio 3 cmdtype ") + command.commandType);
  }
  EXPECT_EQ(std::size(kCommands), 5U);
}

TEST(HueCommandTest, AFailedSendIsToldNobody) {
  Router router;
  TembraAssociation& assoc = router.connect();
  for (const Command& command : kCommands) {
    SCOPED_TRACE(command.name);
    pretendAnOperation(assoc);
    router.fail(kit::Call::Sendto, EPERM);
    EXPECT_EQ(command.call(assoc), &idle);
    EXPECT_EQ(router.takeTrace(), lines({"send hue 304 -> EPERM", "stderr sendto error: Operation not permitted"}));
    EXPECT_EQ(router.state(), std::string("state 5 idle 0 last 5 cancel 2 radio 3 cmdtype ") + command.commandType);
  }
}

TEST(HueCommandTest, TheCommandTypeReplacesItsOwnBytesOnly) {
  Router router;
  TembraAssociation& assoc = router.connect();
  for (const Command& command : kCommands) {
    std::memset(cmdtype, 'x', sizeof cmdtype);
    command.call(assoc);
    const std::string text(command.commandType);
    Bytes expected(sizeof cmdtype, 'x');
    if (text != "Before") expected = Wire(60).bytes(0, expected).text(0, text + '\0').all();
    EXPECT_EQ(Bytes(std::begin(cmdtype), std::end(cmdtype)), expected) << command.name;
  }
}

TEST(HueCommandTest, TheSecondTextIsCutAtItsField) {
  Router router;
  TembraAssociation& assoc = router.connect();
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

TEST(HueCommandTest, NoTextIsAnEmptyText) {
  Router router;
  TembraAssociation& assoc = router.connect();
  assoc.Hue_addDev(mac, nullptr);
  assoc.Hue_refreshBridge(nullptr, nullptr);
  const auto sends = router.takeSends();
  ASSERT_EQ(sends.size(), 2U);
  EXPECT_EQ(sends[0].bytes, Wire(kSize).text(kBridge, kBridgeId).number(kCommand, 105).all());
  EXPECT_EQ(sends[1].bytes, Wire(kSize).number(kCommand, 106).all());
}

TEST(HueCommandTest, AMacTextOfAnotherFormIsConvertedAsItIs) {
  Router router;
  TembraAssociation& assoc = router.connect();
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

TEST(HueCommandTest, ATimeOutUsesWhatTheOperationBeforeLeft) {
  Router router;
  TembraAssociation& assoc = router.connect();
  router.advance(10);
  assoc.Hue_addBridge(mac);
  assoc.cancelTarget = 2;
  assoc.lastEventCode = 7;
  router.forget();
  router.advance(170);
  EXPECT_EQ(router.takeTrace(), lines({"log 0 libTembraAssoc:Didn't get packet for 180 secs",
                                       "log 0 libTembraAssoc:Sending cancel command to zwave_server",
                                       "send zwave 236 op 4 cmd 0", "event 2 source 0"}));
  const TimeoutReport report = router.takeEvents().at(0).timeout();
  EXPECT_EQ(report.lastEventCode, 7);
  EXPECT_STREQ(
      report.json,
      R"({"CommandType":"AddIPDevice", "MobileInternalIndex":"","Success":"false","Reason":"TimeoutReached"})");
  EXPECT_EQ(router.state(), "state 0 idle 1 last 0 cancel 0 radio 3 cmdtype AddIPDevice");
}

TEST(HueCommandTest, ANamingInBetweenIsReportedAsHue) {
  Router router;
  TembraAssociation& assoc = router.connect();
  assoc.Hue_initiateAdd();
  router.forget();
  assoc.setDevType(DEVTYPE_SIREN);
  const auto events = router.takeEvents();
  ASSERT_EQ(events.size(), 1U);
  EXPECT_EQ(events[0].event.code, 7);
  EXPECT_EQ(events[0].event.source, 3);
}
