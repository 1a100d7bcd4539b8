// What the report and the event buffer keep from one event to the next: all 4104 bytes of every event.
#include <gtest/gtest.h>

#include <cstring>

#include "devices.h"
#include "kit/router.h"

using kit::Device;
using kit::Node;
using kit::Router;
using kit::ZigbeeDevice;

namespace {

constexpr char kAdding[] = R"({"CommandType":"AddingDevice","MobileInternalIndex":""})";
constexpr char kGetting[] = R"({"CommandType":"GettingInfo","MobileInternalIndex":""})";
constexpr char kFailed[] =
    R"({"CommandType":"AddDevice","MobileInternalIndex":"","Success":"false","Reason":"AddingFailed"})";

/// The bytes that the events must have, followed step by step beside the library.
class Buffers {
 public:
  explicit Buffers(Router& router) : router_(router) {}

  template <std::size_t Size>
  void progress(int status, int code, const char (&json)[Size]) {
    report_.status = status;
    if (code == EVENT_ADD_FAILED) report_.failure = 0;
    std::memcpy(report_.json, json, Size);
    send(ZigbeeDevice(kLamp).status(status), ASSOC);
    expectReport(code);
  }

  void choice(const ZigbeeDevice& device, int type, std::initializer_list<int> subTypes) {
    report_.type = type;
    report_.status = 10;
    std::memset(report_.subTypes, 0, sizeof report_.subTypes);
    std::copy(subTypes.begin(), subTypes.end(), reinterpret_cast<int*>(report_.subTypes));
    send(device, ASSOC);
    expectReport(EVENT_SELECT_TYPE);
    buffer_ = AssocEvent{};
  }

  void created(const ZigbeeDevice& device, int type, const char* name) {
    report_ = DeviceReport{};
    report_.type = type;
    std::strcpy(report_.name, name);
    std::strcpy(report_.location, "Default");
    send(device, ASSOC);
    expectReport(EVENT_CREATED);
  }

  void removed(int id, const char* name) {
    report_.removedId = id;
    std::strcpy(report_.removedName, name);
    send(ZigbeeDevice(kLamp).status(2), DEASSOC);
    expectReport(EVENT_REMOVED);
  }

  void removedUnknown() {
    send(ZigbeeDevice(kStranger).status(2), DEASSOC);
    expectBytes(EVENT_REMOVED_UNKNOWN, 1);
  }

  void removedUnknownByZwave() {
    router_.assoc().assocState = DEASSOC;
    router_.forget();
    router_.zwave().send(Node(0));
    expectBytes(EVENT_REMOVED_UNKNOWN, 2);
  }

 private:
  void send(const ZigbeeDevice& device, AssocState state) {
    router_.assoc().assocState = state;
    router_.forget();
    router_.zigbee().send(device);
  }

  void expectReport(int code) {
    std::memcpy(buffer_.payload, &report_, sizeof report_);
    expectBytes(code, 1);
  }

  void expectBytes(int code, int source) {
    buffer_.code = code;
    buffer_.source = source;
    const auto events = router_.takeEvents();
    ASSERT_EQ(events.size(), 1U);
    const auto* found = reinterpret_cast<const unsigned char*>(&events[0].event);
    const auto* expected = reinterpret_cast<const unsigned char*>(&buffer_);
    for (std::size_t at = 0; at < sizeof buffer_; ++at) {
      ASSERT_EQ(found[at], expected[at]) << "byte " << at << " of event " << code << ", step " << step_;
    }
    ++step_;
  }

  Router& router_;
  DeviceReport report_{};
  AssocEvent buffer_{};
  int step_ = 1;
};

void prepareWithLamp(Router& router) {
  router.connect();
  router.database().nextId("41").put(Device(7, "Lamp of the upper hall").zigbee(kLamp));
}

}  // namespace

TEST(CarryOverTest, TextsKeepTheTailOfLongerOnes) {
  Router router;
  prepareWithLamp(router);
  Buffers buffers(router);
  buffers.progress(11, EVENT_ADD_FAILED, kFailed);
  buffers.progress(1, EVENT_ADDING, kAdding);
  buffers.progress(6, EVENT_GETTING_INFO, kGetting);
  buffers.removed(7, "Lamp of the upper hall");
  router.database().put(Device(7, "Lamp").zigbee(kLamp));
  buffers.removed(7, "Lamp");
}

TEST(CarryOverTest, OnlyACreatedDeviceClearsTheReport) {
  Router router;
  prepareWithLamp(router);
  Buffers buffers(router);
  buffers.progress(1, EVENT_ADDING, kAdding);
  buffers.removed(7, "Lamp of the upper hall");
  buffers.choice(kCie, 10, {21, 19, 10});
  buffers.progress(2, EVENT_ADD_FAILED, kFailed);
  buffers.removed(7, "Lamp of the upper hall");
  buffers.created(kSwitch, 1, "BinarySwitch #41");
  buffers.removed(7, "Lamp of the upper hall");
  buffers.progress(6, EVENT_GETTING_INFO, kGetting);
}

TEST(CarryOverTest, ARemovalOfNobodyShowsTheBufferAsItWas) {
  Router router;
  prepareWithLamp(router);
  Buffers buffers(router);
  buffers.removedUnknown();
  buffers.progress(1, EVENT_ADDING, kAdding);
  buffers.removedUnknown();
  buffers.removedUnknownByZwave();
  buffers.choice(kCie, 10, {21, 19, 10});
  buffers.removedUnknown();
  buffers.created(kSwitch, 1, "BinarySwitch #41");
  buffers.removedUnknownByZwave();
  buffers.removedUnknown();
}

TEST(CarryOverTest, AShortAnswerIsCompletedByTheOneBefore) {
  Router router;
  TembraAssociation& assoc = router.connect();
  kit::Bytes received(4096, 0);
  for (std::size_t length = 0; length <= 450; ++length) {
    const kit::Bytes datagram(length, static_cast<unsigned char>(length));
    std::copy(datagram.begin(), datagram.end(), received.begin());
    router.zigbee().send(datagram);
    ASSERT_EQ(std::memcmp(&assoc.zbDevice, received.data(), sizeof assoc.zbDevice), 0) << length;
  }
  router.zwave().send(kit::Bytes(1036, 0x33));
  router.zigbee().send(kit::Bytes(11, 0x44));
  std::fill(received.begin(), received.begin() + 1036, static_cast<unsigned char>(0x33));
  std::fill(received.begin(), received.begin() + 11, static_cast<unsigned char>(0x44));
  EXPECT_EQ(std::memcmp(&assoc.zbDevice, received.data(), sizeof assoc.zbDevice), 0) << "also by another server's";
}

TEST(CarryOverTest, AnEmptyAnswerRepeatsTheStatusBefore) {
  Router router;
  TembraAssociation& assoc = router.connect();
  assoc.addDevZigbeeZwave();
  router.zigbee().send(ZigbeeDevice(kLamp).status(3));
  router.zigbee().send(ZigbeeDevice(kLamp).status(1).cutTo(11));
  router.zigbee().send(kit::Bytes{});
  const auto events = router.takeEvents();
  ASSERT_EQ(events.size(), 2U);
  EXPECT_EQ(events[0].event.code, 3);
  EXPECT_EQ(events[1].event.code, 3);
}

TEST(CarryOverTest, AnOversizedAnswerIsCut) {
  Router router;
  TembraAssociation& assoc = router.connect();
  router.zigbee().send(kit::Bytes(6000, 0x55));
  const kit::Bytes expected(sizeof assoc.zbDevice, 0x55);
  EXPECT_EQ(std::memcmp(&assoc.zbDevice, expected.data(), expected.size()), 0);
}

TEST(CarryOverTest, ARemovalNoticeStandsWhereNestEventsFollow) {
  Router router;
  prepareWithLamp(router);
  router.assoc().assocState = DEASSOC;
  ZigbeeDevice device = ZigbeeDevice(kLamp).status(2).maker("someone");
  std::memset(device.info().name, 'n', sizeof device.info().name);
  router.zigbee().send(device);
  router.forget();
  router.nest().send(NestAnswer{121, 0, 0});
  const AssocEvent found = router.takeEvents().at(0).event;
  HaNotice notice{};
  std::memcpy(notice.record, &device.info(), sizeof device.info());
  AssocEvent expected{};
  std::memcpy(&expected, &notice, sizeof notice);
  expected.code = EVENT_NEST_41;
  expected.source = SERVER_NEST;
  EXPECT_EQ(std::memcmp(&found, &expected, sizeof found), 0);
}
