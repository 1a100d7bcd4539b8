// A receive thread that is kept waiting by another process that has the database.
#include <algorithm>
#include <chrono>
#include <cstring>
#include <functional>
#include <initializer_list>
#include <string>
#include <thread>

#include "kernel_stage.h"
#include "kit/lock_holder.h"

using kit::Device;
using kit::LockHolder;
using kit::Node;
using kit::ZigbeeDevice;

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::milliseconds kAtOnce{100};
constexpr int kTries = 5;  // a busy machine keeps anybody waiting now and then

/// How long the slowest takes.
Clock::duration slowestOf(std::initializer_list<std::function<void()>> calls) {
  Clock::duration slowest{};
  for (const auto& call : calls) {
    const auto begin = Clock::now();
    call();
    slowest = std::max(slowest, Clock::now() - begin);
  }
  return slowest;
}

class LockedDatabase : public KernelStage {
 protected:
  /// Waits until the ZigBee answer, whose model is that of a key fob, is stored: the look-up that it asks for goes on
  /// without the library's lock.
  void awaitZigbeeLookUp() {
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    while (std::string(assoc.GetDeviceTypeInStringFormat(0x010F)) != "KeyFob") {
      ASSERT_LT(std::chrono::steady_clock::now(), end);
      std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
  }

  /// An answer that asks the database, closed upon while it waits: nothing is said, told or written any more.
  void closeWhileWaiting(int state, const std::function<void()>& ask) {
    forgetEarlierAnswers(state);
    const std::size_t ended = told("exited receive thread");
    const std::size_t said = trace().size();
    LockHolder holder;
    connect();
    ask();
    assoc.closeAssocConnection();
    EXPECT_EQ(told("exited receive thread"), ended) << "it still waits";
    const std::string left = everything();
    holder.release();
    await("exited receive thread", ended + 1);
    EXPECT_TRUE(everything() == left) << router.state();
    const std::string all = trace().substr(said);
    EXPECT_EQ(all.substr(all.find("log 0 libTembraAssoc:closing")),
              kit::lines({"log 0 libTembraAssoc:closing the Assoc Connection",
                          "log 0 libTembraAssoc:exited receive thread\\n"}));
  }

  static int eventsOfAnyCode() {
    int sum = 0;
    for (int code = EVENT_TIMEOUT; code <= EVENT_NEST_46; ++code) sum += events(code);
    return sum;
  }

  /// An add whose look-up in the database has to wait.
  void addAsFarAsTheLookUp() {
    const std::string lookUp = "................. ZW_ASSOC ...................";
    const std::size_t lookUps = told(lookUp);
    const int adds = events(EVENT_ADDING);
    connect();
    assoc.addDevZigbeeZwave();
    router.zwave().post(Node(5).bytes());
    awaitEvents(EVENT_ADDING, adds + 1);
    router.zwave().post(Node(5).bytes());
    await(lookUp, lookUps + 1);
    std::this_thread::sleep_for(std::chrono::milliseconds(200));
    EXPECT_EQ(events(EVENT_GETTING_INFO), 0) << "it waits";
  }

  /// A front end's calls, up to closing and opening again.
  Clock::duration slowestCallWhileALookUpWaits() {
    const std::size_t threads = runningThreads();
    const std::size_t ended = told("exited receive thread");
    LockHolder holder;
    addAsFarAsTheLookUp();
    char name[] = "Lamp";
    const auto slowest = slowestOf({
        [&] { assoc.setDevName(name); },
        [&] { assoc.sendCancelTo(cancel_both); },
        [&] { assoc.closeAssocConnection(); },
        [&] { EXPECT_EQ(assoc.checkAssocConnection(), 0); },
    });
    EXPECT_EQ(told("exited receive thread"), ended) << "the look-up still waits";
    EXPECT_EQ(runningThreads(), threads + 2);
    assoc.closeAssocConnection();
    holder.release();
    await("exited receive thread", ended + 2);
    awaitThreads(threads);
    return slowest;
  }

 private:
  void forgetEarlierAnswers(int state) {
    assoc.assocState = state;
    assoc.zbDevice = ZbDeviceInfo{};
    assoc.classifiedType = DEVTYPE_KEYPAD;
    std::strcpy(assoc.devName, "Before");
  }

  // All bytes of the service object, and the shared state.
  [[nodiscard]] std::string everything() const {
    return std::string(reinterpret_cast<const char*>(&assoc), sizeof assoc) + router.state();
  }
};

}  // namespace

// The lock is held until every call is back: however long that is, it is not what they wait for.
TEST_F(LockedDatabase, DelaysNoCallerAndNoClosing) {
  router.database().nextId("17");
  Clock::duration slowest = kAtOnce;
  for (int tries = 0; tries < kTries && slowest >= kAtOnce; ++tries) slowest = slowestCallWhileALookUpWaits();
  EXPECT_LT(slowest, kAtOnce);
}

TEST_F(LockedDatabase, LetsNoEventOutAfterTheClosing) {
  router.database().nextId("17");
  LockHolder holder;
  addAsFarAsTheLookUp();
  assoc.closeAssocConnection();
  holder.release();
  await("exited receive thread");
  EXPECT_EQ(events(EVENT_GETTING_INFO), 0);
  EXPECT_EQ(events(EVENT_ADD_FAILED), 0);
  EXPECT_EQ(events(EVENT_ALREADY_ADDED), 0);
}

TEST_F(LockedDatabase, IsWaitedFor) {
  router.database().nextId("17");
  LockHolder holder;
  addAsFarAsTheLookUp();
  holder.release();
  awaitEvents(EVENT_GETTING_INFO);
  EXPECT_EQ(told("stderr "), 0U);
}

TEST_F(LockedDatabase, ClosingInItsWaitEndsAZigbeeAnswer) {
  router.database().nextId("17").put(Device(12, "Lamp").zigbee(0x1234));
  const auto answer = [this](ZigbeeDevice device, int status) {
    router.zigbee().post(device.model("RC_ACE").status(status).bytes());
    awaitZigbeeLookUp();
  };
  const ZigbeeDevice unknown(0x4321);
  closeWhileWaiting(ASSOC, [&] { answer(ZigbeeDevice(0x4321).cluster(0x0006), 10); });
  EXPECT_EQ(assoc.assocState, ASSOC) << "not that of a created device";
  EXPECT_EQ(assoc.zbDevice.devType, 0);
  for (const int status : {2, 5}) {
    closeWhileWaiting(DEASSOC, [&] { answer(unknown, status); });
    EXPECT_EQ(assoc.assocState, DEASSOC);
    EXPECT_EQ(assoc.zbDevice.msgCode, status) << "not 12";
  }
  EXPECT_EQ(eventsOfAnyCode(), 0);
}

TEST_F(LockedDatabase, ClosingInItsWaitEndsAZwaveAnswer) {
  router.database().nextId("17").put(Device(12, "Lamp").zwave(6));
  std::size_t answers = 0;
  const auto answer = [&] {
    router.zwave().post(Node(5).generic(0x10).bytes());
    await("Received Packet from Z-wave", ++answers);
  };
  for (const int state : {ZW_ASSOC, ZW_ASSOC_QUERY, DEASSOC}) {
    closeWhileWaiting(state, answer);
    EXPECT_EQ(assoc.assocState, state);
    EXPECT_STREQ(assoc.devName, "Before");
    EXPECT_EQ(assoc.classifiedType, DEVTYPE_KEYPAD);
    EXPECT_EQ(assoc.zwNodeWork.proposedType, 0);
    EXPECT_EQ(assoc.zwNodeWork.deviceKind, 0);
    EXPECT_EQ(assoc.zwNodeWork.requestMark, 0);
  }
  EXPECT_EQ(eventsOfAnyCode(), 0);
}
