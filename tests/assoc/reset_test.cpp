// Resetting the radio networks.
#include <gtest/gtest.h>

#include <thread>

#include "kit/router_test.h"

using kit::lines;
using kit::Node;

namespace {

using ResetTest = kit::ConnectedTest;

constexpr const char* kBothLine = "log 0 libTembraAssoc:*** Sending reset command to Zigbee_server and Zwave_server";
constexpr const char* kFirst = R"(send zigbee 320 "n l" @180 "")";
constexpr const char* kSecond = R"(send zigbee 320 "option button0" @180 "")";
constexpr const char* kInnerLine = "log 0 libTembraAssoc:Sending reset command to zigbee_server";
constexpr const char* kZwave = "send zwave 236 op 5 cmd 0";

}  // namespace

TEST_F(ResetTest, EachKindHasItsSteps) {
  const struct {
    int type;
    std::string trace;
  } kRows[] = {
      {1, lines({"log 0 libTembraAssoc:Sending reset command to Zigbee_server", kFirst, "sleep 2", kSecond, kInnerLine,
                 "sleep 7"})},
      {2, lines({kZwave, "log 0 libTembraAssoc:Sending reset command to Zwave_server", "sleep 7"})},
      {3, lines({kBothLine, kFirst, "sleep 2", kSecond, kInnerLine, kZwave, "sleep 7"})},
      {4, lines({kBothLine, kFirst, "sleep 2", kSecond, kInnerLine, kZwave,
                 "log 3 libTembraAssoc:*** Removing all devices ***",
                 "log 3 libTembraAssoc:Sending removeAllDevices to haserver", R"(send ha 4100 "removeAllDevices")",
                 "sleep 7"})},
      {0, lines({"log 2 libTembraAssoc:Unknown reset type", "sleep 7"})},
      {9, lines({"log 2 libTembraAssoc:Unknown reset type", "sleep 7"})},
      {-1, lines({"log 2 libTembraAssoc:Unknown reset type", "sleep 7"})},
  };
  for (const auto& row : kRows) {
    assoc.doResetFor(static_cast<reset_type>(row.type));
    EXPECT_EQ(router.takeTrace(), row.trace) << row.type;
  }
}

TEST_F(ResetTest, AnInterruptedSleepIsResumed) {
  router.interruptSleep(3);
  assoc.doResetFor(reset_zwave);
  EXPECT_EQ(router.takeTrace(),
            lines({kZwave, "log 0 libTembraAssoc:Sending reset command to Zwave_server", "sleep 7", "sleep 3"}));
  router.interruptSleep(1);
  assoc.cmdToZigbee(zigbee_cmd_reset);
  EXPECT_EQ(router.takeTrace(), lines({kFirst, "sleep 2", "sleep 1", kSecond, kInnerLine}));
}

// A reset blocks its caller for seconds, and nobody else.
TEST_F(ResetTest, MeanwhileCallsAnswersAndTimeOutsGoOn) {
  router.advance(178);
  std::thread caller([this] { assoc.doResetFor(reset_zigbee); });
  router.awaitSleeper();
  assoc.addDevZigbeeZwave();
  router.zwave().send(Node(255));
  EXPECT_EQ(router.takeEvents().size(), 1U);
  router.advance(2);
  router.awaitSleeper();
  assoc.sendCancelTo(cancel_both);
  router.advance(7);
  caller.join();
}
