// Adding and removing, and the datagrams of each command.
#include <gtest/gtest.h>

#include <cerrno>
#include <chrono>
#include <cstring>
#include <thread>

#include "kit/router_test.h"

using kit::Call;
using kit::lines;
using kit::Node;
using kit::Router;

namespace {

using OperationTest = kit::RouterTest;

constexpr int kUnknownCommands[] = {0, 5, 7, -1, 1000, -2147483647};

constexpr const char* kAdd[] = {R"(send zigbee 320 "option button1" @180 "IAS")", "send zwave 236 op 1 cmd 1"};
constexpr const char* kRemove[] = {R"(send zigbee 320 " " @180 "remove")", "send zwave 236 op 1 cmd 4"};

}  // namespace

TEST(ZigbeeCommandTest, EachHasItsTexts) {
  Router router;
  TembraAssociation& assoc = router.connect();
  const struct {
    zigbee_cmd command;
    std::string trace;
  } kRows[] = {
      {zigbee_cmd_add, lines({kAdd[0]})},
      {zigbee_cmd_remove, lines({kRemove[0]})},
      {zigbee_cmd_reset,
       lines({R"(send zigbee 320 "n l" @180 "")", "sleep 2", R"(send zigbee 320 "option button0" @180 "")",
              "log 0 libTembraAssoc:Sending reset command to zigbee_server"})},
      {zigbee_cmd_cancel, lines({R"(send zigbee 320 "network pjoin 0" @180 "cancel")"})},
  };
  for (const auto& row : kRows) {
    assoc.cmdToZigbee(row.command);
    EXPECT_EQ(router.takeTrace(), row.trace);
  }
}

TEST(ZwaveCommandTest, EachHasItsCodes) {
  Router router;
  TembraAssociation& assoc = router.connect();
  const struct {
    zwave_cmd command;
    const char* trace;
  } kRows[] = {
      {zwave_cmd_add, kAdd[1]},
      {zwave_cmd_remove, kRemove[1]},
      {zwave_cmd_reset, "send zwave 236 op 5 cmd 0"},
      {zwave_cmd_cancel, "send zwave 236 op 4 cmd 0"},
  };
  for (const auto& row : kRows) {
    assoc.cmdToZwave(row.command);
    EXPECT_EQ(router.takeTrace(), lines({row.trace}));
  }
}

TEST(RadioCommandTest, UnknownOnesSendAndSayNothing) {
  Router router;
  TembraAssociation& assoc = router.connect();
  for (const int command : kUnknownCommands) {
    assoc.cmdToZigbee(static_cast<zigbee_cmd>(command));
    assoc.cmdToZwave(static_cast<zwave_cmd>(command));
    EXPECT_EQ(router.takeTrace(), "") << command;
  }
}

TEST(RadioCommandTest, CommandsChangeNoState) {
  Router router;
  TembraAssociation& assoc = router.connect();
  assoc.addDevZigbeeZwave();
  router.zwave().send(Node(5));
  const std::string state = router.state();
  for (const int command : {1, 2, 3, 4}) {
    assoc.cmdToZigbee(static_cast<zigbee_cmd>(command));
    assoc.cmdToZwave(static_cast<zwave_cmd>(command));
    EXPECT_EQ(router.state(), state) << command;
  }
}

TEST(AddTest, AsksBothRadiosAndThenSetsTheState) {
  Router router;
  TembraAssociation& assoc = router.connect();
  assoc.addDevZigbeeZwave();
  EXPECT_EQ(router.takeTrace(), lines({"log 0 libTembraAssoc:inside addDevZigbeeZwave", kAdd[0], kAdd[1]}));
  for (const auto& datagram : router.takeSends()) {
    EXPECT_EQ(datagram.state, "state 0 idle 1 last 0 cancel 3 radio 0 cmdtype ") << datagram.destination;
  }
  EXPECT_EQ(router.state(), "state 1 idle 0 last 0 cancel 3 radio 0 cmdtype AddDevice");
}

TEST(AddTest, TheLineComesBeforeEverything) {
  Router router;
  TembraAssociation& assoc = router.connect();
  std::string state;
  router.onLog([&](const std::string&) { state = router.state(); });
  assoc.addDevZigbeeZwave();
  EXPECT_EQ(state, "state 0 idle 1 last 0 cancel 0 radio 0 cmdtype ");
}

TEST(RemoveTest, AsksBothRadiosWithoutALine) {
  Router router;
  TembraAssociation& assoc = router.connect();
  assoc.removeDevZigbeeZwave();
  EXPECT_EQ(router.takeTrace(), lines({kRemove[0], kRemove[1]}));
  for (const auto& datagram : router.takeSends()) {
    EXPECT_EQ(datagram.state, "state 0 idle 1 last 0 cancel 3 radio 0 cmdtype ") << datagram.destination;
  }
  EXPECT_EQ(router.state(), "state 2 idle 0 last 0 cancel 3 radio 0 cmdtype RemoveDevice");
}

TEST_F(OperationTest, ASecondOneAsksAndSetsEverythingAgain) {
  TembraAssociation& assoc = router.connect();
  assoc.addDevZigbeeZwave();
  router.zwave().send(Node(5));
  router.forget();
  assoc.addDevZigbeeZwave();
  EXPECT_EQ(router.takeTrace(), lines({"log 0 libTembraAssoc:inside addDevZigbeeZwave", kAdd[0], kAdd[1]}));
  EXPECT_EQ(router.state(), "state 1 idle 0 last 3 cancel 3 radio 2 cmdtype AddDevice");
  assoc.removeDevZigbeeZwave();
  EXPECT_EQ(router.takeTrace(), lines({kRemove[0], kRemove[1]}));
  EXPECT_EQ(router.state(), "state 2 idle 0 last 3 cancel 3 radio 2 cmdtype RemoveDevice");
}

TEST_F(OperationTest, TheCommandTextReplacesItsOwnBytesOnly) {
  TembraAssociation& assoc = router.connect();
  std::memset(cmdtype, 'x', sizeof cmdtype);
  assoc.addDevZigbeeZwave();
  char expected[60];
  std::memset(expected, 'x', sizeof expected);
  std::memcpy(expected, "AddDevice", 10);
  EXPECT_EQ(std::memcmp(cmdtype, expected, sizeof expected), 0);
  assoc.removeDevZigbeeZwave();
  std::memcpy(expected, "RemoveDevice", 13);
  EXPECT_EQ(std::memcmp(cmdtype, expected, sizeof expected), 0);
}

TEST_F(OperationTest, FailuresToSendArePrintedAndOtherwiseIgnored) {
  TembraAssociation& assoc = router.connect();
  router.fail(Call::kSendto, EPERM, 2);
  assoc.removeDevZigbeeZwave();
  EXPECT_EQ(router.takeTrace(), lines({
                                    R"(send zigbee 320 " " @180 "remove" -> EPERM)",
                                    "stderr sendto error: Operation not permitted",
                                    "send zwave 236 op 1 cmd 4 -> EPERM",
                                    "stderr sendto error: Operation not permitted",
                                }));
  EXPECT_EQ(router.state(), "state 2 idle 0 last 0 cancel 3 radio 0 cmdtype RemoveDevice");
}

TEST_F(OperationTest, AnAnswerThatComesBeforeTheCommandIsDoneWaitsForIt) {
  TembraAssociation& assoc = router.connect();
  router.onSend([this](const std::string& destination) {
    if (destination == "zwave") router.zwave().post(Node(5).bytes());
    std::this_thread::sleep_for(std::chrono::milliseconds(5));  // time enough to be handled too early
  });
  assoc.addDevZigbeeZwave();
  router.onSend(nullptr);
  router.settle();
  EXPECT_EQ(router.state(), "state 4 idle 0 last 3 cancel 2 radio 2 cmdtype AddingSensor");
}

TEST_F(OperationTest, WithoutAConnectionTheStateIsSetAllTheSame) {
  router.assoc().addDevZigbeeZwave();
  EXPECT_EQ(router.state(), "state 1 idle 0 last 0 cancel 3 radio 0 cmdtype AddDevice");
}

TEST_F(OperationTest, InheritsWhatIsLeftOfTheWait) {
  TembraAssociation& assoc = router.connect();
  router.advance(170);
  assoc.addDevZigbeeZwave();
  router.advance(9);
  EXPECT_TRUE(router.takeEvents().empty());
  router.advance(1);
  EXPECT_EQ(router.takeEvents().size(), 1U);
}
