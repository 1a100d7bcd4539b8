// What survives from one answer to the next: in the event buffers and the report, of which every byte of every event is
// compared, and in the receive buffer, which a short datagram does not fill.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <ostream>

#include "buffers.h"

using kit::Bytes;
using kit::Router;
using kit::ZigbeeDevice;

namespace {

using namespace steps;

struct CarryOverStory {
  const char* name;
  std::vector<Step> steps;
};

void PrintTo(const CarryOverStory& story, std::ostream* out) { *out << story.name; }

const CarryOverStory kCarryOverStories[] = {
    {"ATimeOutHasTheSourceOfTheZwaveEventBefore", {kZwaveAdding, kTimeOut, kZwaveFailed, kTimeOut}},
    {"ATimeOutHasNotTheSourceOfARemovalOrOfZigbee", {kZwaveRemoved, kTimeOut, kZigbeeAdding, kTimeOut}},
    {"ATimeOutHasTheSourceAndTheTailOfAHueEventBefore", {kHueDone, kTimeOut, kHueFailed, kTimeOut}},
    {"TheFailedHueAddHasTheSourceOfTheEventBefore",
     {kHueFailed, kHueBridges, kHueFailed, kNest41, kHueFailed, kZwaveAdding, kHueFailed, kHueDone, kHueFailed}},
    {"TheReportOfAnOfferKeepsWhatWentBefore", {kZigbeeAdding, kZwaveRemoved, kZwaveChoice, kZwaveRemoved}},
    {"OnlyACreatedDeviceClearsTheReport",
     {kZigbeeAdding, kZigbeeRemoved, kZigbeeChoice, kZigbeeFailed, kZigbeeRemoved, kZigbeeCreated, kZigbeeRemoved,
      kZwaveChoice, kZwaveCreated, kZwaveRemoved, kZigbeeInfo}},
    {"TextsKeepTheTailOfLongerOnes", {kZigbeeFailed, kZigbeeAdding, kZigbeeInfo, kZigbeeRemoved, kZwaveRemoved}},
    {"TheListOfSubTypesInheritsNothing", {kZigbeeAdding, kZwaveLongChoice, kZwaveChoice, kZwaveCreated}},
    {"ARemovalOfNobodyShowsTheBufferAsItWas",
     {kZigbeeStranger, kZigbeeAdding, kZigbeeStranger, kZwaveNobody, kZigbeeChoice, kZigbeeStranger, kZigbeeCreated,
      kZwaveNobody, kZwaveChoice, kZwaveStranger, kHueBridges, kZwaveStranger}},
    {"TheBridgeListReplacesADeviceReport", {kZwaveCreated, kHueBridges, kZwaveNobody}},
    {"NestEventsStandWhereTheHueAnswerWasCopied", {kHueBridges, kNest41, kNest44, kHueUnknown, kNest41}},
    {"NestEventsStandWhereARemovalNoticeWasBuilt", {kZigbeeRemoved, kNest41}},
    {"ANewConnectionBeginsWithEmptyBuffers",
     {kZwaveAdding, kZwaveStranger, kHueBridges, kHueDone, kReopen, kTimeOut, kNest41, kHueFailed, kZwaveNobody}},
};

class CarryOver : public testing::TestWithParam<CarryOverStory> {};

TEST_P(CarryOver, IsExact) {
  Buffers buffers;
  for (const Step& step : GetParam().steps) {
    SCOPED_TRACE(step.name);
    step.take(buffers);
  }
}

INSTANTIATE_TEST_SUITE_P(Of, CarryOver, testing::ValuesIn(kCarryOverStories),
                         [](const auto& test) { return test.param.name; });

}  // namespace

// Each event on fresh buffers, then each on what its callback has smeared: nobody writes a byte that is not its own.
TEST(EventBuffers, KeepWhatTheNextEventDoesNotWrite) {
  Buffers buffers;
  for (const Step& first : allSteps()) {
    for (const Step& second : allSteps()) {
      SCOPED_TRACE(std::string(second.name) + " after " + first.name);
      buffers.reopen();
      first.take(buffers);
      second.take(buffers);
      if (testing::Test::HasFailure()) return;
    }
  }
}

TEST(EventBuffers, KeepWhatTheCallbackLeavesInThem) {
  Buffers buffers;
  buffers.smear();
  for (const Step& first : allSteps()) {
    for (const Step& second : allSteps()) {
      SCOPED_TRACE(std::string(second.name) + " after " + first.name);
      first.take(buffers);
      second.take(buffers);
      if (testing::Test::HasFailure()) return;
    }
  }
}

// The receive buffer is one for all, so a short answer ends with what came before it, from whomever.
TEST(ReceiveBuffer, CompletesAShortZwaveAnswerWithWhatCameBefore) {
  Router router;
  TembraAssociation& assoc = router.connect();
  const char* const kSenders[] = {"127.255.255.253", "127.255.255.252", "127.255.255.251", "127.255.255.1",
                                  "127.9.9.9"};
  unsigned char ink = 0x30;
  for (const char* sender : kSenders) {
    ++ink;
    router.zwave().send(Bytes(1036, 0x20));
    assoc.assocState = ASSOC_IDLE;
    router.from(sender, 7000).send(Bytes(300, ink));
    router.zwave().send(Bytes(100, 0x21));
    Bytes expected(1036, 0x20);
    std::fill_n(expected.begin(), 300, ink);
    std::fill_n(expected.begin(), 100, static_cast<unsigned char>(0x21));
    EXPECT_EQ(std::memcmp(&assoc.zwNodeRx, expected.data(), expected.size()), 0) << sender;
  }
}

TEST(ReceiveBuffer, CompletesAShortZigbeeAnswerWithWhatCameBefore) {
  Router router;
  TembraAssociation& assoc = router.connect();
  Bytes received(4096, 0);
  for (std::size_t length = 0; length <= 450; ++length) {
    const Bytes datagram(length, static_cast<unsigned char>(length));
    std::copy(datagram.begin(), datagram.end(), received.begin());
    router.zigbee().send(datagram);
    ASSERT_EQ(std::memcmp(&assoc.zbDevice, received.data(), sizeof assoc.zbDevice), 0) << length;
  }
  router.zwave().send(Bytes(1036, 0x33));
  router.zigbee().send(Bytes(11, 0x44));
  std::fill(received.begin(), received.begin() + 1036, static_cast<unsigned char>(0x33));
  std::fill(received.begin(), received.begin() + 11, static_cast<unsigned char>(0x44));
  EXPECT_EQ(std::memcmp(&assoc.zbDevice, received.data(), sizeof assoc.zbDevice), 0) << "also by another server's";
}

TEST(ReceiveBuffer, MakesAnEmptyAnswerRepeatTheStatusBefore) {
  Router router;
  router.connect().addDevZigbeeZwave();
  router.zigbee().send(ZigbeeDevice(0x1234).status(3));
  router.zigbee().send(ZigbeeDevice(0x1234).status(1).cutTo(11));
  router.zigbee().send(Bytes{});
  const auto events = router.takeEvents();
  ASSERT_EQ(events.size(), 2U);
  EXPECT_EQ(events[0].event.code, 3);
  EXPECT_EQ(events[1].event.code, 3);
}

TEST(ReceiveBuffer, CutsAnOversizedAnswer) {
  Router router;
  TembraAssociation& assoc = router.connect();
  router.zigbee().send(Bytes(6000, 0x55));
  const Bytes expected(sizeof assoc.zbDevice, 0x55);
  EXPECT_EQ(std::memcmp(&assoc.zbDevice, expected.data(), expected.size()), 0);
}
