// Waiting for what the receive thread writes behind a callback.
#include <gtest/gtest.h>
#include <tembra/service.h>

#include <atomic>
#include <cerrno>
#include <chrono>
#include <condition_variable>
#include <filesystem>
#include <fstream>
#include <mutex>
#include <ostream>
#include <thread>

#include "kit/router.h"
#include "receiver/page_inputs.h"

using kit::Call;
using kit::Node;
using kit::Router;
using kit::ZigbeeDevice;
using Clock = std::chrono::steady_clock;

namespace {

constexpr int kLong = 30'000;  // milliseconds

int passedSince(Clock::time_point begin) {
  return static_cast<int>(std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - begin).count());
}

/// The real kernel, and a callback that stays in the event of one code until it may return.
class Settling : public testing::Test {
 protected:
  void SetUp() override {
    router.registerCallback();
    router.onEvent([this](AssocEvent* event) { callback(event); });
  }
  void TearDown() override { release(); }

  void awaitCallback(int code) {
    std::unique_lock<std::mutex> lock(mutex_);
    held_ = code;
    EXPECT_TRUE(changed_.wait_for(lock, std::chrono::milliseconds(kLong), [this] { return isInside_; }));
  }
  void hold(int code) {
    const std::lock_guard<std::mutex> lock(mutex_);
    held_ = code;
  }
  void release() {
    const std::lock_guard<std::mutex> lock(mutex_);
    held_ = 0;
    isInside_ = false;
    changed_.notify_all();
  }
  std::thread releaseIn(int milliseconds) {
    return std::thread([this, milliseconds] {
      std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
      release();
    });
  }

  Router router{kit::Clock::kReal};
  TembraAssociation& assoc = router.assoc();

 private:
  void callback(const AssocEvent* event) {
    std::unique_lock<std::mutex> lock(mutex_);
    if (event->code != held_) return;
    isInside_ = true;
    changed_.notify_all();
    changed_.wait(lock, [this] { return held_ == 0; });
  }

  std::mutex mutex_;
  std::condition_variable changed_;
  int held_ = 0;
  bool isInside_ = false;
};

struct Written {
  const char* name;
  int event;
  void (*lead)(Router&);
  const char* state;
  friend std::ostream& operator<<(std::ostream& stream, const Written& written) { return stream << written.name; }
};

void addNode(Router& router, const Node& described) {
  router.assoc().addDevZigbeeZwave();
  for (const Node& node : {Node(kUnknownNode), Node(kUnknownNode), described}) router.zwave().post(node.bytes());
}

void addZigbee(Router& router, ZigbeeDevice described) {
  router.assoc().addDevZigbeeZwave();
  router.zigbee().post(ZigbeeDevice(kUnknownAddress).status(1).bytes());
  router.zigbee().post(described.bytes());
}

const Written kWritten[] = {
    {"TheChoiceOfANodesType", EVENT_SELECT_TYPE, [](Router& router) { addNode(router, nodeWithSubTypes()); },
     "state 0 idle 0 last 6 cancel 2 radio 2 cmdtype SelectDeviceType"},
    {"ANodesName", EVENT_CREATED, [](Router& router) { addNode(router, nodeWithoutSubTypes()); },
     "state 0 idle 0 last 7 cancel 2 radio 2 cmdtype EditNameLocation"},
    {"TheChoiceOfAZigbeeType", EVENT_SELECT_TYPE, [](Router& router) { addZigbee(router, deviceWithSubTypes()); },
     "state 8 idle 0 last 6 cancel 1 radio 1 cmdtype SelectDeviceType"},
    {"AZigbeeName", EVENT_CREATED, [](Router& router) { addZigbee(router, deviceWithoutSubTypes()); },
     "state 8 idle 0 last 7 cancel 1 radio 1 cmdtype EditNameLocation"},
    {"AFailure", EVENT_ADD_FAILED,
     [](Router& router) {
       router.assoc().addDevZigbeeZwave();
       router.zwave().post(Node(255).bytes());
     },
     "state 0 idle 1 last 0 cancel 2 radio 2 cmdtype AddDevice"},
    {"ATimeOut", EVENT_TIMEOUT, [](Router& router) { router.assoc().addDevZigbeeZwave(); },
     "state 1 idle 1 last 0 cancel 0 radio 0 cmdtype AddDevice"},
};

class Behind : public Settling, public testing::WithParamInterface<Written> {};

INSTANTIATE_TEST_SUITE_P(ACallback, Behind, testing::ValuesIn(kWritten),
                         [](const auto& tested) { return tested.param.name; });

}  // namespace

TEST_P(Behind, IsWrittenWhenTheLibraryHasSettled) {
  const bool waits = GetParam().event == EVENT_TIMEOUT;
  if (waits) router.hurry(500);
  ASSERT_EQ(router.open(), 0);
  hold(GetParam().event);
  GetParam().lead(router);
  awaitCallback(GetParam().event);
  EXPECT_EQ(tembra_settle(0), ETIMEDOUT);
  std::thread later = releaseIn(100);
  const auto begin = Clock::now();
  EXPECT_EQ(tembra_settle(kLong), 0);
  EXPECT_GE(passedSince(begin), 90);
  EXPECT_EQ(router.state(), GetParam().state);
  later.join();
}

TEST_F(Settling, EndsWhenItsTimeIsUp) {
  ASSERT_EQ(router.open(), 0);
  hold(EVENT_ADDING);
  assoc.addDevZigbeeZwave();
  router.zwave().post(Node(kUnknownNode).bytes());
  awaitCallback(EVENT_ADDING);
  for (const int milliseconds : {-1, 0, 60, 1'040}) {
    const auto begin = Clock::now();
    EXPECT_EQ(tembra_settle(milliseconds), ETIMEDOUT);
    EXPECT_GE(passedSince(begin), milliseconds);
    EXPECT_LT(passedSince(begin), milliseconds + kLong);
  }
}

TEST_F(Settling, IsImmediateWhenNothingIsUnderWay) {
  EXPECT_EQ(tembra_settle(0), 0) << "never opened";
  ASSERT_EQ(router.open(), 0);
  EXPECT_EQ(tembra_settle(kLong), 0);
  EXPECT_EQ(tembra_settle(0), 0) << "it waits for the first datagram";
  router.close();
  EXPECT_EQ(tembra_settle(kLong), 0);
  EXPECT_EQ(tembra_settle(0), 0) << "closed";
}

TEST_F(Settling, HasNothingToWaitForWithoutAThread) {
  router.fail(Call::kCreateThread, EAGAIN);
  ASSERT_EQ(router.open(), 0);
  EXPECT_EQ(tembra_settle(0), 0);
}

TEST_F(Settling, WouldBeADeadlockInTheCallbackAndInItsLog) {
  ASSERT_EQ(router.open(), 0);
  std::atomic<int> inCallback{0};
  std::atomic<int> inLog{0};
  router.onEvent([&](AssocEvent*) { inCallback = tembra_settle(kLong); });
  router.onLog([&](const std::string& text) {
    if (text.find("Received Packet from Z-wave") != std::string::npos) inLog = tembra_settle(kLong);
  });
  assoc.addDevZigbeeZwave();
  router.zwave().post(Node(kUnknownNode).bytes());
  for (const auto begin = Clock::now(); inCallback == 0 && passedSince(begin) < kLong;) std::this_thread::yield();
  EXPECT_EQ(inCallback, EDEADLK);
  EXPECT_EQ(inLog, EDEADLK);
}

// What it writes behind the callback may still come when the connection has been closed.
TEST_F(Settling, WaitsForAThreadWhoseConnectionIsClosed) {
  ASSERT_EQ(router.open(), 0);
  hold(EVENT_ADD_FAILED);
  assoc.addDevZigbeeZwave();
  router.zwave().post(Node(255).bytes());
  awaitCallback(EVENT_ADD_FAILED);
  assoc.closeAssocConnection();
  EXPECT_EQ(tembra_settle(0), ETIMEDOUT);
  std::thread later = releaseIn(50);
  EXPECT_EQ(tembra_settle(kLong), 0);
  EXPECT_EQ(router.state(), "state 0 idle 1 last 0 cancel 2 radio 2 cmdtype AddDevice");
  later.join();
}

// A thread of a connection that was replaced writes nothing more: only the new one counts.
TEST_F(Settling, DoesNotWaitForAThreadThatWasReplaced) {
  ASSERT_EQ(router.open(), 0);
  hold(EVENT_ADDING);
  assoc.addDevZigbeeZwave();
  router.zwave().post(Node(kUnknownNode).bytes());
  awaitCallback(EVENT_ADDING);
  assoc.closeAssocConnection();
  ASSERT_EQ(router.open(), 0);
  EXPECT_EQ(tembra_settle(kLong), 0);
  EXPECT_GT(tembra_wait_left(), 0);
}

// The new connection's thread begins only when the router's command has answered.
TEST_F(Settling, EndsWhenTheThreadIsReplacedNotWhenTheNewOneBegins) {
  std::filesystem::remove("/tmp/settled");
  ASSERT_EQ(router.open(), 0);
  hold(EVENT_ADDING);
  assoc.addDevZigbeeZwave();
  router.zwave().post(Node(kUnknownNode).bytes());
  awaitCallback(EVENT_ADDING);
  const std::jthread settling([] {
    EXPECT_EQ(tembra_settle(kLong), 0);
    std::ofstream("/tmp/settled") << "x";
  });
  std::this_thread::sleep_for(std::chrono::milliseconds(100));
  assoc.closeAssocConnection();
  router.nvram().answerWith("for i in $(seq 100); do [ -e /tmp/settled ] && echo 3 && exit; sleep 0.1; done; echo 4");
  ASSERT_EQ(router.open(), 0);
  EXPECT_EQ(local_meshID, 3);
}

// A busy thread passes through its receive between two answers, which is enough.
TEST_F(Settling, DoesNotStarveBesideABusyThread) {
  ASSERT_EQ(router.open(), 0);
  router.onEvent([](AssocEvent*) { std::this_thread::sleep_for(std::chrono::milliseconds(20)); });
  for (int i = 0; i < 40; ++i) {
    router.zigbee().post(ZigbeeDevice(kUnknownAddress).status(3).bytes());
  }
  assoc.addDevZigbeeZwave();
  for (int i = 0; i < 10; ++i) EXPECT_EQ(tembra_settle(1'000), 0);
}
