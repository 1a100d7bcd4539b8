// The datagrams of each command to the radio servers.
#include <gtest/gtest.h>

#include <cerrno>

#include "kit/router_test.h"

using kit::Call;
using kit::lines;

namespace {

using RadioCommandTest = kit::ConnectedTest;

constexpr int kUnknownCommands[] = {0, 5, 7, -1, 1000, -2147483647};

constexpr const char* kAdd[] = {R"(send zigbee 320 "option button1" @180 "IAS")", "send zwave 236 op 1 cmd 1"};
constexpr const char* kRemove[] = {R"(send zigbee 320 " " @180 "remove")", "send zwave 236 op 1 cmd 4"};

}  // namespace

TEST_F(RadioCommandTest, EachOfZigbeeHasItsTexts) {
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

TEST_F(RadioCommandTest, EachOfZwaveHasItsCodes) {
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

TEST_F(RadioCommandTest, UnknownOnesSendAndSayNothing) {
  for (const int command : kUnknownCommands) {
    assoc.cmdToZigbee(static_cast<zigbee_cmd>(command));
    assoc.cmdToZwave(static_cast<zwave_cmd>(command));
    EXPECT_EQ(router.takeTrace(), "") << command;
  }
}

TEST_F(RadioCommandTest, FailuresToSendArePrintedAndOtherwiseIgnored) {
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
