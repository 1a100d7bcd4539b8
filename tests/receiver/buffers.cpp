#include "buffers.h"

#include <gtest/gtest.h>

#include <cstring>

#include "ipdev/wire.h"
#include "nodes.h"

using kit::Bytes;
using kit::Device;
using kit::Node;
using kit::ZigbeeDevice;

namespace {

constexpr unsigned char kInk = 0xAA;
constexpr int kInkSource = 99;
constexpr int kSourceKept = -1;
constexpr unsigned short kLamp = 0x1234, kStranger = 0x4321;

const Bytes kTwoBridges =
    hueAnswer(0, 2, {R"({"id":"a1b2c3fffe0a1b01","internalipaddress":"10.0.0.1"})", R"({"id":"a1b2c3fffe0a1b02"})"});

void writeText(unsigned char* to, const std::string& text) { std::memcpy(to, text.c_str(), text.size() + 1); }

void listSubTypes(DeviceReport& report, std::initializer_list<int> types) {
  std::memset(report.subTypes, 0, sizeof report.subTypes);
  std::copy(types.begin(), types.end(), reinterpret_cast<int*>(report.subTypes));
}

void sendZwave(Buffers& buffers, int state, const Node& node) {
  BasicFlag = SensorBinaryFlag = 0;
  buffers.assoc.assocState = state;
  buffers.router.zwave().send(node);
}

void sendZigbee(Buffers& buffers, int state, const ZigbeeDevice& device) {
  buffers.assoc.assocState = state;
  buffers.router.zigbee().send(device);
}

void progressZwave(Buffers& buffers, int state, const Node& node, int code) {
  sendZwave(buffers, state, node);
  buffers.expect(buffers.a, code, SERVER_ZWAVE);
}

// The list alone is emptied before it is written, so nothing of a longer one stays.
void offerZwave(Buffers& buffers, const Node& node, int type, std::initializer_list<int> subTypes) {
  buffers.report.type = type;
  listSubTypes(buffers.report, subTypes);
  sendZwave(buffers, ZW_ASSOC_QUERY, node);
  buffers.expectReport(EVENT_SELECT_TYPE, SERVER_ZWAVE);
  buffers.b = AssocEvent{};
}

void expectCreated(Buffers& buffers, int type, const char* name, int source) {
  buffers.report = DeviceReport{};
  buffers.report.type = type;
  std::strcpy(buffers.report.name, name);
  std::strcpy(buffers.report.location, "Default");
  buffers.expectReport(EVENT_CREATED, source);
}

// A shorter name leaves the tail of a longer one.
void reportRemoved(Buffers& buffers, int id, const char* name) {
  buffers.report.removedId = id;
  std::strcpy(buffers.report.removedName, name);
}

void progressZigbee(Buffers& buffers, int status, int code, const char* json) {
  buffers.report.status = status;
  if (code == EVENT_ADD_FAILED) buffers.report.failure = 0;
  std::memcpy(buffers.report.json, json, std::strlen(json) + 1);
  sendZigbee(buffers, ASSOC, ZigbeeDevice(kLamp).status(status));
  buffers.expectReport(code, SERVER_ZIGBEE);
}

// The answer is copied whole, also when it is of an unknown type.
void sendHue(Buffers& buffers, const Bytes& answer) {
  std::memcpy(&buffers.c, answer.data(), answer.size());
  std::strcpy(cmdtype, "X");
  buffers.router.hue().send(answer);
}

void resultOfHue(Buffers& buffers, int type, int code, int source, const std::string& rest) {
  writeText(buffers.a.payload, R"({"CommandType":"X")" + rest + "\n");
  sendHue(buffers, hueAnswer(type));
  buffers.expect(buffers.a, code, source);
}

}  // namespace

Buffers::Buffers() : assoc(router.connect()) {
  router.database().nextId("17").put(Device(7, "Lamp of the upper hall").zigbee(kLamp));
  router.database().put(Device(-12, "Lamp").zwave(5));
}

void Buffers::smear() {
  smears_ = true;
  router.onEvent([](AssocEvent* event) { smearRecord(*event); });
}

void Buffers::smearRecord(AssocEvent& event) {
  event.source = kInkSource;
  std::memset(event.payload, kInk, sizeof event.payload);
}

void Buffers::expect(AssocEvent& buffer, int code, int source) {
  buffer.code = code;
  if (source != kSourceKept) buffer.source = source;
  const auto events = router.takeEvents();
  ASSERT_EQ(events.size(), 1U);
  const auto* found = reinterpret_cast<const unsigned char*>(&events[0].event);
  const auto* expected = reinterpret_cast<const unsigned char*>(&buffer);
  for (std::size_t at = 0; at < sizeof buffer; ++at) {
    ASSERT_EQ(found[at], expected[at]) << "byte " << at << " of event " << code;
  }
  if (smears_) smearRecord(buffer);
}

void Buffers::expectReport(int code, int source) {
  std::memcpy(b.payload, &report, sizeof report);
  expect(b, code, source);
}

void Buffers::reopen() {
  router.close();
  ASSERT_EQ(router.open(), 0);
  router.forget();
  a = b = c = AssocEvent{};
  report = DeviceReport{};
}

namespace steps {

const Step kReopen = {"reopen", [](Buffers& buffers) { buffers.reopen(); }};

const Step kTimeOut = {"time-out", [](Buffers& buffers) {
                         TimeoutReport report{};
                         report.lastEventCode = EVENT_ADDING;
                         std::strcpy(report.json, R"({"CommandType":"X", "MobileInternalIndex":"",)"
                                                  R"("Success":"false","Reason":"TimeoutReached"})");
                         std::memcpy(buffers.a.payload, &report, sizeof report);
                         buffers.assoc.lastEventCode = EVENT_ADDING;
                         std::strcpy(cmdtype, "X");
                         idle = 0;
                         buffers.router.advance(180);
                         buffers.expect(buffers.a, EVENT_TIMEOUT, kSourceKept);
                       }};

const Step kZwaveAdding = {"Z-Wave adding",
                           [](Buffers& buffers) { progressZwave(buffers, ASSOC, Node(77), EVENT_ADDING); }};
const Step kZwaveInfo = {"Z-Wave info",
                         [](Buffers& buffers) { progressZwave(buffers, ZW_ASSOC, Node(77), EVENT_GETTING_INFO); }};
const Step kZwaveKnown = {"Z-Wave known",
                          [](Buffers& buffers) { progressZwave(buffers, ZW_ASSOC, Node(5), EVENT_ALREADY_ADDED); }};
const Step kZwaveFailed = {"Z-Wave failed",
                           [](Buffers& buffers) { progressZwave(buffers, ASSOC, Node(255), EVENT_ADD_FAILED); }};
const Step kZwaveNotClassified = {"Z-Wave not classified", [](Buffers& buffers) {
                                    progressZwave(buffers, ZW_ASSOC_QUERY, Node(77).basic(0), EVENT_ADD_FAILED);
                                  }};
const Step kZwaveChoice = {"Z-Wave choice", [](Buffers& buffers) {
                             offerZwave(buffers, kSwitch, DEVTYPE_BINARY_SWITCH, {42, 1, 43});
                           }};
const Step kZwaveLongChoice = {"Z-Wave choice of six", [](Buffers& buffers) {
                                 const Node sensor = Node(5).generic(0).values({{0x20, 0, 1}, {0x30, 0, 1}});
                                 offerZwave(buffers, sensor, DEVTYPE_GENERIC_DEVICE, {39, 11, 37, 36, 55, 42});
                               }};

// The type is the pending device's, which classifying a Z-Wave node leaves alone.
const Step kZwaveCreated = {"Z-Wave created", [](Buffers& buffers) {
                              buffers.assoc.devType = 12;
                              sendZwave(buffers, ZW_ASSOC_QUERY, kGateway);
                              expectCreated(buffers, 12, "Gateway #17", SERVER_ZWAVE);
                            }};
const Step kZwaveRemoved = {"Z-Wave removed", [](Buffers& buffers) {
                              reportRemoved(buffers, -12, "Lamp");
                              sendZwave(buffers, DEASSOC, Node(5));
                              buffers.expectReport(EVENT_REMOVED, SERVER_ZWAVE);
                            }};
const Step kZwaveStranger = {"Z-Wave stranger removed", [](Buffers& buffers) {
                               sendZwave(buffers, DEASSOC, Node(77));
                               buffers.expect(buffers.b, EVENT_REMOVED_UNKNOWN, SERVER_ZWAVE);
                             }};
const Step kZwaveNobody = {"Z-Wave nobody removed", [](Buffers& buffers) {
                             sendZwave(buffers, DEASSOC, Node(0));
                             buffers.expect(buffers.b, EVENT_REMOVED_UNKNOWN, SERVER_ZWAVE);
                           }};

const Step kZigbeeAdding = {"ZigBee adding", [](Buffers& buffers) {
                              progressZigbee(buffers, 1, EVENT_ADDING,
                                             R"({"CommandType":"AddingDevice","MobileInternalIndex":""})");
                            }};
const Step kZigbeeInfo = {"ZigBee info", [](Buffers& buffers) {
                            progressZigbee(buffers, 6, EVENT_GETTING_INFO,
                                           R"({"CommandType":"GettingInfo","MobileInternalIndex":""})");
                          }};
const Step kZigbeeFailed = {"ZigBee failed", [](Buffers& buffers) {
                              progressZigbee(buffers, 11, EVENT_ADD_FAILED,
                                             R"({"CommandType":"AddDevice","MobileInternalIndex":"",)"
                                             R"("Success":"false","Reason":"AddingFailed"})");
                            }};
const Step kZigbeeChoice = {"ZigBee choice", [](Buffers& buffers) {
                              buffers.report.type = 10;
                              buffers.report.status = 10;
                              listSubTypes(buffers.report, {21, 19, 10});
                              sendZigbee(buffers, ASSOC, ZigbeeDevice(kLamp).status(10).zone(0).cluster(0x0500));
                              buffers.expectReport(EVENT_SELECT_TYPE, SERVER_ZIGBEE);
                              buffers.b = AssocEvent{};
                            }};
const Step kZigbeeCreated = {"ZigBee created", [](Buffers& buffers) {
                               sendZigbee(buffers, ASSOC, ZigbeeDevice(kLamp).status(10).cluster(0x0006));
                               expectCreated(buffers, 1, "BinarySwitch #17", SERVER_ZIGBEE);
                             }};
// The notice to the HA server is built over the third buffer: its kind, and the answer with its status.
const Step kZigbeeRemoved = {"ZigBee removed", [](Buffers& buffers) {
                               ZigbeeDevice device = ZigbeeDevice(kLamp).status(2).maker("someone");
                               std::memset(device.info().name, 'n', sizeof device.info().name);
                               HaNotice notice{};
                               notice.recordKind = 1;
                               std::memcpy(notice.record, &device.info(), sizeof device.info());
                               std::memcpy(&buffers.c, &notice, 4 + sizeof device.info());
                               reportRemoved(buffers, 7, "Lamp of the upper hall");
                               sendZigbee(buffers, DEASSOC, device);
                               buffers.expectReport(EVENT_REMOVED, SERVER_ZIGBEE);
                             }};
const Step kZigbeeStranger = {"ZigBee stranger removed", [](Buffers& buffers) {
                                sendZigbee(buffers, DEASSOC, ZigbeeDevice(kStranger).status(2));
                                buffers.expect(buffers.b, EVENT_REMOVED_UNKNOWN, SERVER_ZIGBEE);
                              }};

const Step kHueDone = {"Hue done", [](Buffers& buffers) {
                         resultOfHue(buffers, 8, EVENT_HUE_DONE, SERVER_HUE,
                                     R"(, "MobileInternalIndex":"","Success":"true","Type":"HueHub"})");
                       }};
const Step kHueFailed = {"Hue failed", [](Buffers& buffers) {
                           resultOfHue(
                               buffers, 1, EVENT_HUE_FAILED, kSourceKept,
                               R"(,"MobileInternalIndex":"","Success":"false","Reason":"HueFailed","Type":"HueHub"})");
                         }};
// An address that an entry lacks is that of the entry before.
const Step kHueBridges = {
    "Hue bridges", [](Buffers& buffers) {
      const Bytes list = bridgeList({{"a1:b2:c3:0a:1b:01", "10.0.0.1"}, {"a1:b2:c3:0a:1b:02", "10.0.0.1"}});
      std::memcpy(buffers.b.payload, list.data(), list.size());
      sendHue(buffers, kTwoBridges);
      buffers.expect(buffers.b, EVENT_HUE_BRIDGES, SERVER_HUE);
    }};
const Step kHueUnknown = {"Hue unknown", [](Buffers& buffers) {
                            sendHue(buffers, Bytes(3260, 0x77));
                            EXPECT_TRUE(buffers.router.takeEvents().empty());
                          }};
const Step kNest41 = {"Nest 41", [](Buffers& buffers) {
                        buffers.router.nest().send(nestAnswer(121));
                        buffers.expect(buffers.c, EVENT_NEST_41, SERVER_NEST);
                      }};
const Step kNest44 = {"Nest 44", [](Buffers& buffers) {
                        const Bytes answer = nestAnswer(100, 8, 9);
                        std::memcpy(buffers.c.payload, answer.data(), answer.size());
                        buffers.router.nest().send(answer);
                        buffers.expect(buffers.c, EVENT_NEST_44, SERVER_NEST);
                      }};

}  // namespace steps

std::vector<Step> allSteps() {
  using namespace steps;
  return {kTimeOut,         kReopen,        kZwaveAdding,        kZwaveInfo,
          kZwaveKnown,      kZwaveFailed,   kZwaveNotClassified, kZwaveChoice,
          kZwaveLongChoice, kZwaveCreated,  kZwaveRemoved,       kZwaveStranger,
          kZwaveNobody,     kZigbeeAdding,  kZigbeeInfo,         kZigbeeFailed,
          kZigbeeChoice,    kZigbeeCreated, kZigbeeRemoved,      kZigbeeStranger,
          kHueDone,         kHueFailed,     kHueBridges,         kHueUnknown,
          kNest41,          kNest44};
}
