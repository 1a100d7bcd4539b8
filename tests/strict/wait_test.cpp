// What strict mode keeps of the waits, of the log and of the daemons.
#include <gtest/gtest.h>
#include <tembra/endpoints.h>
#include <tembra/service.h>

#include <algorithm>

#include "ipdev/wire.h"
#include "kit/router_test.h"

using kit::Bytes;
using kit::lines;
using kit::Node;

namespace {

constexpr char kDropped[] = "log 2 libTembraAssoc:strict mode: dropped a stranger's datagram";

class StrictWait : public kit::ConnectedTest {
 protected:
  StrictWait() { tembra_set_strict(1); }

  // The removal of a device that the database does not hold: 20 seconds for the closing answer.
  void awaitClosingAnswer() {
    assoc.removeDevZigbeeZwave();
    router.zwave().send(Node(5));
    router.forget();
  }

  [[nodiscard]] bool hasTimedOut() {
    return std::ranges::any_of(router.takeEvents(),
                               [](const kit::RecordedEvent& recorded) { return recorded.event.code == EVENT_TIMEOUT; });
  }
};

}  // namespace

// The kit's clock knows whole seconds, and rounds up.
TEST_F(StrictWait, GoesOnWhateverStrangersSend) {
  kit::Peer stranger = router.from("127.0.0.1");
  awaitClosingAnswer();
  for (int i = 0; i < 2; ++i) {
    router.advance(7);
    stranger.send(Bytes(1));
  }
  router.advance(5);
  EXPECT_FALSE(hasTimedOut());
  router.advance(1);
  EXPECT_TRUE(hasTimedOut());
  EXPECT_EQ(idle, 1);
}

TEST_F(StrictWait, BeginsAnewWithADatagramThatCounts) {
  awaitClosingAnswer();
  router.advance(15);
  router.ha().send(Bytes(1));
  router.advance(19);
  EXPECT_FALSE(hasTimedOut());
  router.advance(1);
  EXPECT_TRUE(hasTimedOut());
}

TEST_F(StrictWait, EndsWhenStrangersDatagramsHaveFilledIt) {
  kit::Peer stranger = router.from("127.0.0.1");
  awaitClosingAnswer();
  router.advance(19);
  stranger.send(Bytes(1));
  EXPECT_LE(tembra_wait_left(), 1000);
  router.advance(1);
  EXPECT_TRUE(hasTimedOut());
  stranger.send(Bytes(1));
  EXPECT_GT(tembra_wait_left(), 18'000);
}

TEST_F(StrictWait, LogsAStrangerOnceASecond) {
  kit::Peer stranger = router.from("127.0.0.1");
  for (int i = 0; i < 50; ++i) stranger.send(Bytes(1));
  EXPECT_EQ(router.takeTrace(), lines({kDropped}));
  router.advance(1);
  for (int i = 0; i < 50; ++i) stranger.send(Bytes(1));
  EXPECT_EQ(router.takeTrace(), lines({kDropped}));
}

TEST_F(StrictWait, HearsTheDaemonsAtTheEndpointTablesAddresses) {
  assoc.removeDevZigbeeZwave();
  router.zigbee().send(kit::ZigbeeDevice(7).status(12));
  assoc.removeDevZigbeeZwave();
  router.zwave().send(Node(5));
  router.hue().send(hueAnswer(1));
  router.nest().send(nestAnswer(100));
  std::vector<int> codes;
  for (const kit::RecordedEvent& event : router.takeEvents()) codes.push_back(event.event.code);
  EXPECT_EQ(codes, (std::vector<int>{EVENT_REMOVED_UNKNOWN, EVENT_REMOVED_UNKNOWN, EVENT_HUE_FAILED, EVENT_NEST_44}));
}

// A late answer of the Hue server sets `idle`, and then no time-out comes: the radios must be heard.
TEST_F(StrictWait, HearsARadioWhoseOperationTheHueServerEnds) {
  assoc.removeDevZigbeeZwave();
  router.hue().send(hueAnswer(1));
  EXPECT_EQ(idle, 1);
  router.takeEvents();
  router.zwave().send(Node(5));
  EXPECT_EQ(router.takeEvents().size(), 1U);
}

// The callback runs without the library's lock, and the time-out has not been dealt with to its end.
TEST_F(StrictWait, HearsTheAnswerOfAnAddThatBeginsInTheTimeOutsCallback) {
  assoc.addDevZigbeeZwave();
  router.onEvent([this](AssocEvent* event) {
    if (event->code == EVENT_TIMEOUT) assoc.addDevZigbeeZwave();
  });
  router.advance(190);
  EXPECT_TRUE(hasTimedOut());
  router.zwave().send(Node(77));
  const std::vector<kit::RecordedEvent> events = router.takeEvents();
  ASSERT_EQ(events.size(), 1U);
  EXPECT_EQ(events.front().event.code, EVENT_ADDING);
}

// No add or removal came before, so no answer is late.
TEST_F(StrictWait, HearsTheRadiosAsWithoutStrictModeWhileNoDeviceIsExpected) {
  for (const int state : {ASSOC_IDLE, ASSOC_RESET}) {
    const auto answers = [&](int strict) {
      tembra_set_strict(strict);
      assoc.assocState = state;
      router.forget();
      router.zwave().send(Node(5));
      router.zigbee().send(kit::ZigbeeDevice(7).status(2));
      return router.takeTrace();
    };
    const std::string without = answers(0);
    EXPECT_EQ(answers(1), without) << state;
    EXPECT_NE(without.find("Received Packet from Z-wave"), std::string::npos) << without;
  }
}

// A front end that moves an endpoint moves what strict mode expects.
TEST_F(StrictWait, KnowsAnEndpointThatWasMoved) {
  kit::Peer moved = router.from("127.255.255.254", 7777);
  assoc.removeDevZigbeeZwave();
  moved.send(Node(5));
  EXPECT_TRUE(router.takeEvents().empty());
  adr_ozw.sin_port = htons(7777);
  moved.send(Node(5));
  EXPECT_EQ(router.takeEvents().size(), 1U);
}

TEST_F(StrictWait, IsAsWithoutStrictModeOnceItIsOff) {
  tembra_set_strict(0);
  kit::Peer stranger = router.from("127.0.0.1");
  awaitClosingAnswer();
  for (int i = 0; i < 5; ++i) {
    router.advance(7);
    stranger.send(Bytes(1));
  }
  EXPECT_FALSE(hasTimedOut());
  EXPECT_EQ(idle, 0);
}
