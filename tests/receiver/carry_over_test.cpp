// What the thread's event buffers and its report keep from one event to the next. Whatever a callback leaves in the
// record that it gets is still there when the same buffer is used again, which shows who writes which byte.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>

#include "kit/router.h"
#include "nodes.h"

using kit::Bytes;
using kit::Device;
using kit::Node;
using kit::RecordedEvent;
using kit::Router;

namespace {

constexpr unsigned char kInk = 0xAA;
constexpr int kInkSource = 99;

const Node kSensor = Node(5).generic(0x00).values({{0x20, 0, 1}, {0x30, 0, 1}});  // six sub-types
const Node kGeneric = Node(5).generic(0x00);                                      // none

class CarryOver : public testing::Test {
 protected:
  Router router;
  TembraAssociation& assoc = router.connect();

  /// The event that this answer to the Z-Wave server's state gives.
  RecordedEvent event(int state, const Node& node) {
    assoc.assocState = state;
    idle = 0;
    router.zwave().send(node);
    return last();
  }

  RecordedEvent timeout() {
    idle = 0;
    router.advance(180);
    return last();
  }

  RecordedEvent zigbeeEvent(unsigned char status) {
    ZbDeviceInfo device{};
    device.msgCode = status;
    assoc.assocState = ASSOC;
    router.zigbee().send(device);
    return last();
  }

  /// Lets the callback smear each record that it gets.
  void smearEvents() {
    router.onEvent([](AssocEvent* event) {
      event->source = kInkSource;
      std::memset(event->payload, kInk, sizeof event->payload);
    });
  }

 private:
  RecordedEvent last() {
    const auto events = router.takeEvents();
    EXPECT_EQ(events.size(), 1U);
    return events.empty() ? RecordedEvent{} : events.back();
  }
};

// Whether the payload from `from` on is this byte.
testing::AssertionResult payloadIs(unsigned char byte, const RecordedEvent& recorded, std::size_t from = 0) {
  const auto* end = std::end(recorded.event.payload);
  const auto* other = std::find_if(recorded.event.payload + from, end, [=](unsigned char b) { return b != byte; });
  if (other == end) return testing::AssertionSuccess();
  return testing::AssertionFailure() << "event " << recorded.event.code << " has " << static_cast<int>(*other) << " at "
                                     << other - recorded.event.payload;
}

std::vector<int> subTypes(const RecordedEvent& recorded) {
  const DeviceReport report = recorded.report();
  return {std::begin(report.subTypes), std::end(report.subTypes)};
}

std::vector<int> listOf(std::initializer_list<int> types) {
  std::vector<int> list(types);
  list.resize(50);
  return list;
}

}  // namespace

TEST_F(CarryOver, AThreadBeginsWithEmptyBuffers) {
  const RecordedEvent recorded = timeout();
  EXPECT_EQ(recorded.event.source, 0);
  EXPECT_TRUE(payloadIs(0, recorded, sizeof(TimeoutReport)));
  EXPECT_TRUE(payloadIs(0, event(ASSOC, Node(255)), sizeof(TimeoutReport)));
  EXPECT_TRUE(payloadIs(0, event(DEASSOC, Node(255))));
}

TEST_F(CarryOver, ATimeOutHasTheSourceOfTheEventBefore) {
  EXPECT_EQ(event(ASSOC, Node(5)).event.source, SERVER_ZWAVE);
  EXPECT_EQ(timeout().event.source, SERVER_ZWAVE);
}

// Removals and the events of the ZigBee server go through another record.
TEST_F(CarryOver, ATimeOutHasNotTheSourceOfARemovalOrOfZigbee) {
  EXPECT_EQ(event(DEASSOC, Node(5)).event.source, SERVER_ZWAVE);
  EXPECT_EQ(timeout().event.source, 0);
  EXPECT_EQ(zigbeeEvent(1).event.source, SERVER_ZIGBEE);
  EXPECT_EQ(timeout().event.source, 0);
}

TEST_F(CarryOver, ATimeOutHasTheSourceOfAHueAnswerBefore) {
  HueAnswer answer{};
  answer.type = 8;
  router.hue().send(answer);
  router.forget();
  EXPECT_EQ(timeout().event.source, SERVER_HUE);
}

TEST_F(CarryOver, ANewThreadForgets) {
  event(ASSOC, Node(5));
  event(DEASSOC, Node(5));
  router.close();
  ASSERT_EQ(router.open(), 0);
  EXPECT_EQ(timeout().event.source, 0);
}

TEST_F(CarryOver, ATimeOutWritesItsReportAndNothingElse) {
  smearEvents();
  event(ASSOC, Node(5));
  std::strcpy(cmdtype, "AVeryLongCommandTypeTextOfAllThatFitIntoTheField");
  EXPECT_EQ(timeout().event.source, kInkSource);
  assoc.lastEventCode = EVENT_ADDING;
  std::strcpy(cmdtype, "X");
  const RecordedEvent recorded = timeout();
  TimeoutReport expected{};
  expected.lastEventCode = EVENT_ADDING;
  std::strcpy(expected.json,
              R"({"CommandType":"X", "MobileInternalIndex":"","Success":"false","Reason":"TimeoutReached"})");
  EXPECT_EQ(std::memcmp(recorded.event.payload, &expected, 1028), 0);
  EXPECT_TRUE(payloadIs(kInk, recorded, 1028));
  EXPECT_EQ(recorded.event.source, kInkSource);
}

TEST_F(CarryOver, EventsWithoutAPayloadLeaveItAlone) {
  smearEvents();
  router.database().put(Device(12, "Lamp").zwave(5));
  event(ASSOC, Node(77));
  const struct {
    int state;
    Node node;
    int code;
  } kRows[] = {{ASSOC, Node(77), EVENT_ADDING},
               {ZW_ASSOC, Node(77), EVENT_GETTING_INFO},
               {ZW_ASSOC, Node(5), EVENT_ALREADY_ADDED},
               {ASSOC, Node(255), EVENT_ADD_FAILED},
               {ZW_ASSOC_QUERY, Node(77).basic(0), EVENT_ADD_FAILED}};
  for (const auto& row : kRows) {
    const RecordedEvent recorded = event(row.state, row.node);
    EXPECT_EQ(recorded.event.code, row.code);
    EXPECT_EQ(recorded.event.source, SERVER_ZWAVE);
    EXPECT_TRUE(payloadIs(kInk, recorded));
  }
  event(DEASSOC, Node(0));
  EXPECT_TRUE(payloadIs(kInk, event(DEASSOC, Node(77))));
  EXPECT_TRUE(payloadIs(kInk, event(DEASSOC, Node(0))));
}

TEST_F(CarryOver, DeviceEventsWriteTheirReportAndNothingElse) {
  router.database().put(Device(12, "Lamp").zwave(5));
  for (const int code : {EVENT_SELECT_TYPE, EVENT_CREATED, EVENT_REMOVED}) {
    smearEvents();
    event(DEASSOC, Node(0));
    const bool removal = code == EVENT_REMOVED;
    const RecordedEvent recorded =
        event(removal ? DEASSOC : ZW_ASSOC_QUERY, code == EVENT_SELECT_TYPE ? kSwitch : kGateway);
    EXPECT_EQ(recorded.event.code, code);
    EXPECT_TRUE(payloadIs(kInk, recorded, sizeof(DeviceReport)));
    EXPECT_EQ(recorded.event.payload[sizeof(DeviceReport) - 1], 0);
  }
}

TEST_F(CarryOver, TheRecordOfAnOfferIsZeroAfterwards) {
  smearEvents();
  event(ZW_ASSOC_QUERY, kSwitch);
  EXPECT_TRUE(payloadIs(0, event(DEASSOC, Node(0))));
}

TEST_F(CarryOver, TheRecordOfACreatedDeviceIsNot) {
  smearEvents();
  event(ZW_ASSOC_QUERY, kGateway);
  EXPECT_TRUE(payloadIs(kInk, event(DEASSOC, Node(0))));
}

TEST_F(CarryOver, TheReportOfAnOfferKeepsWhatWentBefore) {
  router.database().put(Device(12, "Lamp").zwave(5));
  zigbeeEvent(1);
  event(DEASSOC, Node(5));
  const DeviceReport offer = event(ZW_ASSOC_QUERY, kSwitch).report();
  EXPECT_STREQ(offer.removedName, "Lamp");
  EXPECT_EQ(offer.removedId, 12);
  EXPECT_EQ(offer.status, 1);
  EXPECT_STREQ(offer.json, R"({"CommandType":"AddingDevice","MobileInternalIndex":""})");
  const DeviceReport removal = event(DEASSOC, Node(5)).report();
  EXPECT_EQ(removal.type, DEVTYPE_BINARY_SWITCH);
  EXPECT_EQ(removal.subTypes[0], 42);
}

TEST_F(CarryOver, TheReportIsEmptyBeforeACreatedDeviceIsTold) {
  router.database().put(Device(12, "Lamp").zwave(5)).nextId("17");
  zigbeeEvent(1);
  event(DEASSOC, Node(5));
  event(ZW_ASSOC_QUERY, kSwitch);
  DeviceReport expected{};
  std::strcpy(expected.name, "Gateway #17");
  std::strcpy(expected.location, "Default");
  const DeviceReport created = event(ZW_ASSOC_QUERY, kGateway).report();
  EXPECT_EQ(std::memcmp(&created, &expected, sizeof expected), 0);
  const DeviceReport removal = event(DEASSOC, Node(5)).report();
  EXPECT_STREQ(removal.name, "Gateway #17");
  EXPECT_STREQ(removal.location, "Default");
  EXPECT_STREQ(removal.json, "");
}

TEST_F(CarryOver, AShorterRemovedNameLeavesTheTailOfALongerOne) {
  router.database().put(Device(12, "Chandelier").zwave(5)).put(Device(13, "Tap").zwave(6));
  event(DEASSOC, Node(5));
  const DeviceReport removal = event(DEASSOC, Node(6)).report();
  EXPECT_EQ(std::string(removal.removedName, 11), std::string("Tap\0delier", 10) + '\0');
}

// The list alone is emptied, so neither a longer list nor one that is not written at all inherits anything.
TEST_F(CarryOver, TheListOfSubTypesInheritsNothing) {
  zigbeeEvent(1);
  EXPECT_EQ(subTypes(event(ZW_ASSOC_QUERY, kSensor)), listOf({39, 11, 37, 36, 55, 42}));
  const RecordedEvent offer = event(ZW_ASSOC_QUERY, kSwitch);
  EXPECT_EQ(subTypes(offer), listOf({42, 1, 43}));
  EXPECT_EQ(offer.report().status, 1);
  EXPECT_EQ(offer.report().json[0], '{');
  BasicFlag = SensorBinaryFlag = 0;
  EXPECT_EQ(event(ZW_ASSOC_QUERY, kGeneric).event.code, EVENT_CREATED);
}

// The receive buffer is one for all, so a short answer ends with what came before it, from whomever.
TEST_F(CarryOver, AShortDatagramEndsWithTheOneBefore) {
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
