// The connection closed, or closed and opened again, under the step of the receive loop that called the front end.
#include <cstring>
#include <thread>
#include <vector>

#include "callback_stage.h"
#include "occurrences.h"

using kit::Device;
using kit::lines;
using kit::Node;
using kit::Router;
using kit::ZigbeeDevice;

TEST_F(Callback, MayClose) {
  inCallback([this] { assoc.closeAssocConnection(); });
  router.watch(kit::kWatchConnection);
  assoc.addDevZigbeeZwave();
  router.zwave().send(Node(5));
  const std::string trace = router.takeTrace();
  EXPECT_NE(trace.find(lines(
                {"event 3 source 2", "log 0 libTembraAssoc:closing the Assoc Connection", "shutdown 2", "close"})),
            std::string::npos)
      << trace;
  EXPECT_TRUE(endsWithExit(trace)) << trace;
  EXPECT_EQ(assoc_meshID, -1);
  router.forget();
  router.advance(1000);
  EXPECT_EQ(router.takeTrace(), "");
}

TEST_F(Callback, MayCloseWhenAnOperationTimedOut) {
  inCallback([this] { assoc.closeAssocConnection(); });
  assoc.addDevZigbeeZwave();
  router.advance(180);
  EXPECT_EQ(router.takeEvents().size(), 1U);
  EXPECT_TRUE(endsWithExit(router.takeTrace()));
}

namespace {

constexpr unsigned short kDoor = 0x1234, kNobodysAddress = 0x4321;

// An answer that tells an event, and the state of the association when the callback runs.
struct Told {
  int state;
  kit::Peer& (Router::*from)();
  kit::Bytes datagram;
  int code;
  int stateInCallback;
};

Told byZwave(int state, const Node& node, int code, int stateInCallback) {
  return {state, &Router::zwave, node.bytes(), code, stateInCallback};
}

Told byZigbee(int state, int status, ZigbeeDevice device, int code, int stateInCallback) {
  return {state, &Router::zigbee, device.status(status).bytes(), code, stateInCallback};
}

// A Hue or a Nest answer begins with two numbers; the state of the association plays no part.
Told byIpServer(kit::Peer& (Router::*server)(), int first, int second, int code) {
  kit::Bytes datagram(sizeof(HueAnswer));
  std::memcpy(datagram.data(), &first, sizeof first);
  std::memcpy(datagram.data() + sizeof first, &second, sizeof second);
  return {ZW_ASSOC_QUERY, server, datagram, code, ZW_ASSOC_QUERY};
}

std::vector<Told> everyZwaveEvent() {
  return {
      byZwave(ASSOC, Node(255), EVENT_ADD_FAILED, ASSOC),
      byZwave(ASSOC, Node(5), EVENT_ADDING, ZW_ASSOC),
      byZwave(ZW_ASSOC, Node(6), EVENT_ALREADY_ADDED, ZW_ASSOC),
      byZwave(ZW_ASSOC, Node(255), EVENT_ADD_FAILED, ZW_ASSOC),
      byZwave(ZW_ASSOC, Node(5), EVENT_GETTING_INFO, ZW_ASSOC_QUERY),
      byZwave(ZW_ASSOC_QUERY, Node(5).basic(0), EVENT_ADD_FAILED, ZW_ASSOC_QUERY),
      byZwave(ZW_ASSOC_QUERY, Node(5).generic(0x10), EVENT_SELECT_TYPE, ZW_ASSOC_QUERY),
      byZwave(ZW_ASSOC_QUERY, Node(5).generic(0x02), EVENT_CREATED, ZW_ASSOC_QUERY),
      byZwave(DEASSOC, Node(0), EVENT_REMOVED_UNKNOWN, DEASSOC),
      byZwave(DEASSOC, Node(6), EVENT_REMOVED, ZW_REMOVING),
      byZwave(DEASSOC, Node(5), EVENT_REMOVED_UNKNOWN, DEASSOC),
  };
}

std::vector<Told> everyZigbeeEvent() {
  const ZigbeeDevice known(kDoor), unknown(kNobodysAddress);
  return {
      byZigbee(ASSOC, 1, known, EVENT_ADDING, ASSOC),
      byZigbee(ASSOC, 6, known, EVENT_GETTING_INFO, ASSOC),
      byZigbee(ASSOC, 10, ZigbeeDevice(kDoor).zone(0x0000).cluster(0x0500), EVENT_SELECT_TYPE, ASSOC),
      byZigbee(ASSOC, 10, ZigbeeDevice(kDoor).cluster(0x0006), EVENT_CREATED, ASSOC),
      byZigbee(ASSOC, 2, known, EVENT_ADD_FAILED, ASSOC_IDLE),
      byZigbee(ASSOC, 11, known, EVENT_ADD_FAILED, ASSOC_IDLE),
      byZigbee(DEASSOC, 2, known, EVENT_REMOVED, DEASSOC),
      byZigbee(DEASSOC, 12, known, EVENT_REMOVED_UNKNOWN, DEASSOC),
      byZigbee(DEASSOC, 2, unknown, EVENT_REMOVED_UNKNOWN, DEASSOC),
  };
}

std::vector<Told> everyIpEvent() {
  std::vector<Told> told;
  const int hueEvents[][2] = {{0, 21}, {1, 30}, {2, 25}, {3, 27}, {4, 26}, {5, 28}, {6, 29}, {8, 22}, {9, 23}};
  for (const auto& [type, code] : hueEvents) told.push_back(byIpServer(&Router::hue, type, 0, code));
  const int nestEvents[][3] = {{100, 0, 44}, {121, 0, 41}, {122, 0, 43}, {123, 0, 42}, {124, 0, 45}, {124, -1, 46}};
  for (const auto& [command, status, code] : nestEvents) {
    told.push_back(byIpServer(&Router::nest, command, status, code));
  }
  return told;
}

}  // namespace

// The new connection is the new thread's: of the old one's step nothing is left but its last line.
class Reopening : public Callback {
 protected:
  /// The callback opens a new connection, starts an operation on it, and chooses a type.
  void reopenInCallback() {
    inCallback([this] {
      assoc.closeAssocConnection();
      EXPECT_EQ(assoc.checkAssocConnection(), 0);
      assoc.removeDevZigbeeZwave();
      assoc.devType = DEVTYPE_SIREN;
      left_ = everything();
    });
  }

  void expectTheOldFlowEndsWith(const Told& told) {
    assoc.assocState = told.state;
    idle = 0;
    router.watch(kit::kWatchTimeouts);
    reopenInCallback();
    (router.*told.from)().send(told.datagram);
    const auto events = router.takeEvents();
    ASSERT_EQ(events.size(), 1U) << told.code;
    EXPECT_EQ(events[0].event.code, told.code);
    const std::string before = "state " + std::to_string(told.stateInCallback) + " ";
    EXPECT_EQ(events[0].state.substr(0, before.size()), before) << told.code;
    EXPECT_EQ(router.state().substr(0, 14), "state 2 idle 0") << told.code;
    EXPECT_STREQ(cmdtype, "RemoveDevice");
    EXPECT_TRUE(everything() == left_) << told.code << ": " << router.state();
    expectNothingBut(router.takeTrace(), told.code);
    expectOneNewReceiver(events[0].thread);
    router.forget();
  }

  void expectThatOfAll(const std::vector<Told>& all) {
    router.database().nextId("17").put(Device(12, "Lamp").zwave(6)).put(Device(13, "Door").zigbee(kDoor));
    for (const Told& told : all) expectTheOldFlowEndsWith(told);
  }

  /// One connection, one thread: an answer is handled once, by another thread than before.
  void expectOneNewReceiver(std::thread::id before) {
    router.forget();
    assoc.assocState = ASSOC;
    router.zwave().send(Node(5));
    EXPECT_EQ(occurrences(router.takeTrace(), "Received Packet from Z-wave"), 1U);
    const auto events = router.takeEvents();
    ASSERT_EQ(events.size(), 1U);
    EXPECT_NE(events[0].thread, before);
  }

 private:
  // The opening with the new wait, the operation on it, and the old thread's end.
  static void expectNothingBut(const std::string& trace, int code) {
    const std::string after = trace.substr(trace.find(kEntered));
    EXPECT_EQ(occurrences(after, "\n"), 6U) << code << ": " << after;
    EXPECT_EQ(occurrences(after, "Thread created successfully"), 1U) << code;
    EXPECT_EQ(occurrences(after, "send z"), 2U) << code;
    EXPECT_EQ(occurrences(after, "timeout 180\n"), 1U) << code;
    EXPECT_EQ(occurrences(after, kExited), 1U) << code;
  }

  // All bytes of the service object, and the shared state.
  [[nodiscard]] std::string everything() const {
    return std::string(reinterpret_cast<const char*>(&assoc), sizeof assoc) + router.state() + std::to_string(DevId);
  }

  std::string left_;
};

TEST_F(Reopening, TheOldFlowWritesNothingIntoTheNewConnection) {
  const auto all = everyZwaveEvent();
  EXPECT_EQ(all.size(), 11U);
  expectThatOfAll(all);
}

TEST_F(Reopening, NorDoesTheOldFlowOfZigbee) {
  const auto all = everyZigbeeEvent();
  EXPECT_EQ(all.size(), 9U);
  expectThatOfAll(all);
}

TEST_F(Reopening, NorDoTheOldFlowsOfHueAndNest) {
  const auto all = everyIpEvent();
  EXPECT_EQ(all.size(), 15U);
  expectThatOfAll(all);
}

// A connection that the callback opened is not the one that ends with the answer.
TEST_F(Reopening, TheWebServersNewConnectionStaysOpen) {
  TembraAssociation::webServerAssocInit();
  expectThatOfAll(everyIpEvent());
  EXPECT_EQ(assoc.running, 1);
  router.hue().send(everyIpEvent().at(1).datagram);
  EXPECT_EQ(assoc.running, 0) << "its own answers end it";
}

TEST_F(Reopening, ATimeOutWritesNothingIntoTheNewConnection) {
  assoc.addDevZigbeeZwave();
  inCallback([this] {
    assoc.closeAssocConnection();
    EXPECT_EQ(assoc.checkAssocConnection(), 0);
    assoc.removeDevZigbeeZwave();
  });
  router.advance(180);
  EXPECT_EQ(router.state(), "state 2 idle 0 last 0 cancel 3 radio 0 cmdtype RemoveDevice");
  expectOneNewReceiver(router.takeEvents().at(0).thread);
}

TEST_F(Reopening, ManyTimesInOneCallbackLeavesOneReceiver) {
  inCallback([this] {
    for (int i = 0; i < 20; ++i) {
      assoc.closeAssocConnection();
      EXPECT_EQ(assoc.checkAssocConnection(), 0);
    }
  });
  assoc.assocState = ASSOC;
  router.zwave().send(Node(5));
  const auto events = router.takeEvents();
  ASSERT_EQ(events.size(), 1U);
  const std::string trace = router.takeTrace();
  EXPECT_EQ(occurrences(trace, kEntered), 20U);
  EXPECT_EQ(occurrences(trace, kExited), 20U);
  expectOneNewReceiver(events[0].thread);
}
