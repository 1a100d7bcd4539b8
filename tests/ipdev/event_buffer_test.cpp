// What an event does not write keeps what its buffer held before.
#include <gtest/gtest.h>

#include <string>

#include "kit/router.h"
#include "wire.h"

using kit::Bytes;
using kit::lines;
using kit::Node;
using kit::Router;

namespace {

constexpr int kFailed = 1;
constexpr int kDone = 8;

const Bytes kList =
    hueAnswer(0, 2, {R"({"id":"a1b2c3fffe0a1b01","internalipaddress":"10.0.0.1"})", R"({"id":"a1b2c3fffe0a1b02"})"});
const Bytes kListPayload = bridgeList({{"a1:b2:c3:0a:1b:01", "10.0.0.1"}, {"a1:b2:c3:0a:1b:02", "10.0.0.1"}});

}  // namespace

TEST(EventBufferTest, TheFailedAddKeepsTheSourceOfTheEventBefore) {
  Router router;
  TembraAssociation& assoc = router.connect();
  const auto fail = [&router] { router.hue().send(hueAnswer(kFailed)); };
  fail();
  router.hue().send(kList);
  fail();
  router.nest().send(nestAnswer(121));
  fail();
  assoc.assocState = ASSOC;
  router.zwave().send(Node(5));
  fail();
  router.hue().send(hueAnswer(kDone));
  fail();
  std::string events;
  for (const auto& recorded : router.takeEvents()) {
    events += std::to_string(recorded.event.code) + "/" + std::to_string(recorded.event.source) + " ";
  }
  EXPECT_EQ(events, "30/0 21/3 30/0 41/4 30/0 3/2 30/2 22/3 30/3 ")
      << "the bridge list and the Nest events have buffers of their own";
}

TEST(EventBufferTest, ATimeOutKeepsTheSourceAndTheTextOfAHueEvent) {
  Router router;
  router.connect();
  idle = 0;
  router.hue().send(hueAnswer(kDone));
  idle = 0;
  router.forget();
  router.advance(180);
  const auto events = router.takeEvents();
  ASSERT_EQ(events.size(), 1U);
  EXPECT_EQ(events[0].event.code, 2);
  EXPECT_EQ(events[0].event.source, 3);
  router.hue().send(hueAnswer(kFailed));
  EXPECT_EQ(router.takeEvents().at(0).event.source, 3);
}

TEST(EventBufferTest, TheBridgeListStaysForAnEventOfTheRadiosWithoutPayload) {
  Router router;
  TembraAssociation& assoc = router.connect();
  router.hue().send(kList);
  assoc.assocState = DEASSOC;
  router.zwave().send(Node(77));
  const auto events = router.takeEvents();
  ASSERT_EQ(events.size(), 2U);
  EXPECT_EQ(events[1].event.code, 12);
  EXPECT_EQ(payloadOf(events[1]), payloadOf(kListPayload));
}

TEST(EventBufferTest, TheBridgeListReplacesADeviceReportWhole) {
  Router router;
  TembraAssociation& assoc = router.connect();
  assoc.assocState = ZW_ASSOC_QUERY;
  router.zwave().send(Node(5).generic(0x02).specific(7));
  router.hue().send(kList);
  const auto events = router.takeEvents();
  ASSERT_EQ(events.size(), 2U);
  EXPECT_EQ(events[0].event.code, 7);
  EXPECT_NE(payloadOf(events[0]), payloadOf(Bytes{}));
  EXPECT_EQ(payloadOf(events[1]), payloadOf(kListPayload));
}

TEST(EventBufferTest, NestEventsStandWhereTheHueAnswerWasCopied) {
  Router router;
  router.connect();
  router.hue().send(kList);
  router.nest().send(nestAnswer(121));
  const Bytes behindItsHead(kList.begin() + 8, kList.end());
  const auto events = router.takeEvents();
  ASSERT_EQ(events.size(), 2U);
  EXPECT_EQ(payloadOf(events[1]), payloadOf(behindItsHead));
  const Bytes answer = nestAnswer(100, 8, 9);
  router.nest().send(answer);
  EXPECT_EQ(payloadOf(router.takeEvents().at(0)), Wire(4096).bytes(0, behindItsHead).bytes(0, answer).all());
}

TEST(EventBufferTest, AnUnknownHueAnswerIsCopiedThereToo) {
  Router router;
  router.connect();
  const Bytes unknown(3260, 0x77);
  router.hue().send(unknown);
  router.nest().send(nestAnswer(124));
  const auto events = router.takeEvents();
  ASSERT_EQ(events.size(), 1U);
  EXPECT_EQ(events[0].event.source, 4);
  EXPECT_EQ(payloadOf(events[0]), payloadOf(Bytes(3252, 0x77)));
}

TEST(EventBufferTest, ANewConnectionBeginsWithEmptyBuffers) {
  Router router;
  router.connect();
  router.hue().send(kList);
  router.hue().send(hueAnswer(kDone));
  router.close();
  ASSERT_EQ(router.open(), 0);
  router.forget();
  router.nest().send(nestAnswer(121));
  router.hue().send(hueAnswer(kFailed));
  const auto events = router.takeEvents();
  ASSERT_EQ(events.size(), 2U);
  EXPECT_EQ(payloadOf(events[0]), payloadOf(Bytes{}));
  EXPECT_EQ(events[1].event.source, 0);
}
