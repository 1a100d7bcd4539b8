// Thousands of rounds on the real kernel: nothing is lost, nothing is left behind, every end is prompt.
#include <memory>
#include <thread>

#include "endurance.h"
#include "operations.h"
#include "receiver/signal_storm.h"

using kit::Node;

namespace {

using Rounds = Endurance;

/// Answers of every daemon, and two front-end threads that call everything but opening and closing.
class Commotion {
 public:
  Commotion(kit::Router& router, TembraAssociation& assoc)
      : traffic_([&router](int turn) { sendTraffic(router, turn); }),
        upwards_([&assoc](int turn) { call(assoc, turn); }),
        downwards_([&assoc](int turn) { call(assoc, -1 - turn); }) {}

 private:
  static void sendTraffic(kit::Router& router, int turn) {
    const auto number = static_cast<unsigned char>(turn);
    router.zwave().post(Node(number).generic(0x10).specific(1).bytes());
    ZbDeviceInfo device{};
    device.msgCode = static_cast<unsigned char>(number % 13);
    postRecord(router.zigbee(), device);
    HueAnswer hue{};
    hue.type = number % 11;
    postRecord(router.hue(), hue);
    postRecord(router.nest(), NestAnswer{100 + number % 25, 0, 0});
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }

  template <typename Record>
  static void postRecord(kit::Peer& peer, const Record& record) {
    const auto* first = reinterpret_cast<const unsigned char*>(&record);
    peer.post({first, first + sizeof record});
  }

  static void call(TembraAssociation& assoc, int turn) {
    const auto& all = operations();
    const auto count = static_cast<int>(all.size());
    const Operation& operation = all[static_cast<std::size_t>((turn % count + count) % count)];
    if (!operation.disturbsOpening()) operation.call(assoc);
    std::this_thread::sleep_for(std::chrono::microseconds(100));
  }

  const Background traffic_, upwards_, downwards_;
};

}  // namespace

TEST_F(Rounds, OfOpeningAndClosingUnderTrafficAndCommands) {
  router.database().nextId("17").put(kit::Device(12, "Lamp").zwave(5));
  router.hurry(kHaste);
  std::unique_ptr<Commotion> commotion;
  repeat(
      [this](int round) {
        ASSERT_EQ(assoc.checkAssocConnection(), 0) << "round " << round;
        if (round % 3 == 0) std::this_thread::sleep_for(std::chrono::milliseconds(1));
        close();
      },
      [&] { commotion = std::make_unique<Commotion>(router, assoc); }, [&] { commotion.reset(); });
  expectPromptEnds();
  EXPECT_GT(heard(EVENT_ADDING), 0);
}

// With minutes made milliseconds: whatever the thread does first, the add that follows the opening at once is ended by
// exactly one time-out, which cancels it on both radios.
TEST_F(Rounds, OfAnAddRightAfterOpeningEachHaveTheirTimeOut) {
  router.hurry(kHaste);
  repeat([this](int round) {
    connect();
    assoc.addDevZigbeeZwave();
    awaitHeard(EVENT_TIMEOUT, round + 1);
    close();
    EXPECT_EQ(router.takeSends().size(), 4U) << "add and cancel on both radios, round " << round;
  });
  EXPECT_EQ(heard(EVENT_TIMEOUT), rounds());
  expectPromptEnds();
}

TEST_F(Rounds, OfClosingInTheCallback) {
  std::atomic<std::chrono::steady_clock::time_point> closed;
  inCallback([&](AssocEvent*) {
    closed = std::chrono::steady_clock::now();
    assoc.closeAssocConnection();
  });
  repeat([&](int round) {
    connect();
    assoc.addDevZigbeeZwave();
    router.zwave().post(Node(5).bytes());
    awaitHeard(EVENT_ADDING, round + 1);
    awaitEnd(closed);
  });
  EXPECT_EQ(heard(EVENT_ADDING), rounds());
  expectPromptEnds();
}

TEST_F(Rounds, OfAnAddUnderSignals) {
  const SignalStorm storm;
  repeat([this](int round) {
    connect();
    EXPECT_EQ(local_meshID, 3) << "round " << round;
    assoc.addDevZigbeeZwave();
    router.zwave().post(Node(5).bytes());
    awaitHeard(EVENT_ADDING, round + 1);
    close();
    EXPECT_EQ(router.takeSends().size(), 3U) << "the add, and the cancel for the radio that lost, round " << round;
  });
  EXPECT_GT(SignalStorm::taken(), 0) << "the storm is one";
  EXPECT_EQ(heard(EVENT_TIMEOUT), 0);
  expectPromptEnds();
}

// Whichever thread opened last: one receive thread serves the connection, and none is left of the others.
TEST_F(Rounds, OfTwoThreadsThatOpenAndClose) {
  const auto openAndClose = [this] {
    for (int i = 0; i < 2; ++i) {
      assoc.checkAssocConnection();
      assoc.closeAssocConnection();
    }
  };
  repeat([&](int round) {
    std::thread other(openAndClose);
    openAndClose();
    other.join();
    connect();
    assoc.addDevZigbeeZwave();
    router.zwave().post(Node(5).bytes());
    awaitHeard(EVENT_ADDING, round + 1);
    close();
    EXPECT_EQ(router.takeSends().size(), 3U) << "the add, and the cancel for the radio that lost, round " << round;
  });
  EXPECT_EQ(heard(EVENT_ADDING), rounds());
  expectPromptEnds();
}
