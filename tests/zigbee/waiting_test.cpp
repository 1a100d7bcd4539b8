// A ZigBee device that stops answering: when the operation ends, and whom the time-out cancels.
#include <gtest/gtest.h>

#include "devices.h"
#include "kit/router_test.h"

using kit::lines;
using kit::Router;
using kit::ZigbeeDevice;

namespace {

using WaitingTest = kit::ConnectedTest;

constexpr char kCancellingZigbee[] = "log 0 libTembraAssoc:Sending cancel command to zigbee_server";
constexpr char kClosingTheNetwork[] = R"(send zigbee 320 "network pjoin 0" @180 "cancel")";

// An add that comes to a halt.
struct Halt {
  const char* title;
  ZigbeeDevice device;
  std::initializer_list<int> statuses;
  int seconds;
  int lastEvent;
  const char* commandType;
};

const Halt kHalts[] = {
    {"found", kSwitch, {1}, 60, 3, "AddingSensor"},
    {"found again", kSwitch, {1, 6, 1}, 60, 3, "AddingSensor"},
    {"asked", kSwitch, {1, 6}, 180, 5, "GettingInfo"},
    {"still adding", kSwitch, {1, 3}, 60, 3, "AddingSensor"},
    {"given up without a word", kSwitch, {1, 12}, 60, 3, "AddingSensor"},
    {"created, to be named", kSwitch, {1, 6, 10}, 180, 7, "EditNameLocation"},
    {"created at once", kSwitch, {1, 10}, 60, 7, "EditNameLocation"},
    {"created, to be chosen", kCie, {1, 6, 10}, 180, 6, "SelectDeviceType"},
    {"not created", kMeterWithoutValues, {1, 6, 10}, 180, 5, "GettingInfo"},
};

std::string json(const std::string& commandType) {
  return R"({"CommandType":")" + commandType +
         R"(", "MobileInternalIndex":"","Success":"false","Reason":"TimeoutReached"})";
}

std::string silence(int seconds) {
  return "log 0 libTembraAssoc:Didn't get packet for " + std::to_string(seconds) + " secs";
}

void answer(Router& router, ZigbeeDevice device, int status) { router.zigbee().send(device.status(status)); }

}  // namespace

TEST_F(WaitingTest, ASilentDeviceIsCancelledOnItsRadioOnly) {
  for (const Halt& halt : kHalts) {
    SCOPED_TRACE(halt.title);
    assoc.addDevZigbeeZwave();
    for (const int status : halt.statuses) answer(router, halt.device, status);
    const int state = assoc.assocState;
    router.forget();
    router.advance(halt.seconds - 1);
    EXPECT_EQ(router.takeTrace(), "");
    router.advance(1);
    EXPECT_EQ(router.takeTrace(),
              lines({silence(halt.seconds), kCancellingZigbee, kClosingTheNetwork, "event 2 source 0"}));
    const TimeoutReport report = router.takeEvents().at(0).timeout();
    EXPECT_EQ(report.lastEventCode, halt.lastEvent);
    EXPECT_EQ(report.json, json(halt.commandType));
    EXPECT_EQ(router.state(),
              "state " + std::to_string(state) + " idle 1 last 0 cancel 0 radio 1 cmdtype " + halt.commandType);
    router.advance(halt.seconds);
  }
}

TEST_F(WaitingTest, AnAnswerAfterTheTimeOutIsStillHandled) {
  assoc.addDevZigbeeZwave();
  answer(router, kSwitch, 1);
  router.advance(60);
  router.forget();
  answer(router, kSwitch, 10);
  EXPECT_EQ(router.takeEvents().at(0).event.code, 7);
  EXPECT_EQ(router.state(), "state 8 idle 1 last 7 cancel 0 radio 1 cmdtype EditNameLocation");
  router.advance(600);
  EXPECT_TRUE(router.takeEvents().empty()) << "nothing waits any more";
}

TEST_F(WaitingTest, AFailedAddLeavesNothingToWaitFor) {
  assoc.addDevZigbeeZwave();
  answer(router, kSwitch, 1);
  answer(router, kSwitch, 2);
  router.forget();
  router.advance(60);
  EXPECT_EQ(router.takeTrace(), lines({silence(60), "log 0 libTembraAssoc:idle timeout set to 180 sec..."}));
}

TEST_F(WaitingTest, AnAddThatWasAbandonedUnseenIsCancelledOnBothRadios) {
  assoc.addDevZigbeeZwave();
  answer(router, kSwitch, 4);
  router.forget();
  router.advance(180);
  EXPECT_EQ(router.takeTrace(), lines({silence(180), kCancellingZigbee, kClosingTheNetwork,
                                       "log 0 libTembraAssoc:Sending cancel command to zwave_server",
                                       "send zwave 236 op 4 cmd 0", "event 2 source 0"}));
  EXPECT_EQ(router.state(), "state 0 idle 1 last 0 cancel 0 radio 0 cmdtype AddDevice");
}
