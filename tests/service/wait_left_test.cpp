// The time that is left of a wait.
#include <gtest/gtest.h>
#include <tembra/service.h>

#include <chrono>
#include <ostream>
#include <string>
#include <thread>

#include "kit/router_test.h"
#include "receiver/page_inputs.h"

using kit::Call;
using kit::Node;
using kit::Router;
using kit::ZigbeeDevice;

namespace {

constexpr long long kNone = -1;
constexpr long long kSlack = 20'000;  // real time that a busy machine may take between a wait's beginning and the look

struct Wait {
  const char* name;
  void (*begin)(Router&);
  long long seconds;
  friend std::ostream& operator<<(std::ostream& stream, const Wait& wait) { return stream << wait.name; }
};

const Wait kWaits[] = {
    {"Idle", [](Router&) {}, 180},
    {"NobodyAnswersAnAdd",
     [](Router& router) {
       router.assoc().addDevZigbeeZwave();
       router.advance(180);
     },
     180},
    {"ANodeJoins",
     [](Router& router) {
       router.assoc().addDevZigbeeZwave();
       router.zwave().send(Node(kUnknownNode));
     },
     60},
    {"ANodeIsIdentified",
     [](Router& router) {
       router.assoc().addDevZigbeeZwave();
       for (int i = 0; i < 2; ++i) router.zwave().send(Node(kUnknownNode));
     },
     180},
    {"AZigbeeDeviceJoins",
     [](Router& router) {
       router.assoc().addDevZigbeeZwave();
       router.zigbee().send(ZigbeeDevice(kUnknownAddress).status(1));
     },
     60},
    {"ANodeLeaves",
     [](Router& router) {
       fillHome(router);
       router.assoc().removeDevZigbeeZwave();
       router.zwave().send(Node(kKnownNode));
     },
     20},
};

std::string lastTimeoutOf(const std::string& trace) {
  std::string last;
  for (const std::string& line : kit::linesOf(trace)) {
    if (line.starts_with("timeout ")) last = line.substr(8);
  }
  return last;
}

class WaitLeft : public testing::TestWithParam<Wait> {};

INSTANTIATE_TEST_SUITE_P(Is, WaitLeft, testing::ValuesIn(kWaits), [](const auto& tested) { return tested.param.name; });

using NoWait = kit::RouterTest;

}  // namespace

TEST_P(WaitLeft, CountsDownFromTheTimeOut) {
  Router router;
  router.watch(kit::kWatchTimeouts);
  router.registerCallback();
  ASSERT_EQ(router.open(), 0);
  router.settle();
  GetParam().begin(router);
  EXPECT_EQ(lastTimeoutOf(router.takeTrace()), std::to_string(GetParam().seconds)) << "what the socket was told";
  const long long whole = GetParam().seconds * 1000;
  const long long first = tembra_wait_left();
  EXPECT_LE(first, whole);
  EXPECT_GT(first, whole - kSlack);
  constexpr int pause = 30;
  std::this_thread::sleep_for(std::chrono::milliseconds(pause));
  const long long second = tembra_wait_left();
  EXPECT_LE(second, first - pause + 1);
  EXPECT_GT(second, first - kSlack);
}

TEST_F(NoWait, BeforeTheOpeningAndBehindTheClosing) {
  router.assoc();
  EXPECT_EQ(tembra_wait_left(), kNone);
  router.connect();
  EXPECT_GT(tembra_wait_left(), 0);
  router.close();
  EXPECT_EQ(tembra_wait_left(), kNone);
  router.connect();
  EXPECT_GT(tembra_wait_left(), 0);
}

TEST_F(NoWait, WithoutAThread) {
  router.fail(Call::kCreateThread, EAGAIN);
  router.connect();
  EXPECT_EQ(tembra_wait_left(), kNone);
}

TEST_F(NoWait, WhileAnEventIsHandled) {
  router.connect();
  long long left = 0;
  router.onEvent([&left](AssocEvent*) { left = tembra_wait_left(); });
  router.assoc().addDevZigbeeZwave();
  router.zwave().send(Node(kUnknownNode));
  EXPECT_EQ(left, kNone);
}
