// Closing and opening again, at any moment, on the real kernel.
#include <chrono>
#include <thread>

#include "background.h"
#include "kernel_stage.h"

using kit::Node;

namespace {

class Closing : public KernelStage {
 protected:
  void sendTraffic(int turn) {
    router.zwave().post(Node(static_cast<unsigned char>(turn)).generic(0x02).specific(7).bytes());
    router.from("127.9.9.9").post(Node(5).bytes());
    std::this_thread::sleep_for(std::chrono::microseconds(200));
  }

  void expectEveryThreadToHaveEnded() {
    await("exited receive thread", told("entered receive thread"));
    EXPECT_EQ(told("exited receive thread"), told("entered receive thread"));
  }
};

}  // namespace

TEST_F(Closing, WakesAReceiverThatWaits) {
  connect();
  const auto begin = std::chrono::steady_clock::now();
  assoc.closeAssocConnection();
  await("exited receive thread");
  EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(5));
  EXPECT_EQ(told("Didn't get packet"), 0U);
}

// Whenever it comes, no cancel is sent for it and no time-out is told.
TEST_F(Closing, DuringAnAddEndsItInSilence) {
  constexpr int kRounds = 200;
  for (int round = 0; round < kRounds; ++round) {
    connect();
    assoc.addDevZigbeeZwave();
    router.zwave().post(Node(5).bytes());
    std::this_thread::sleep_for(std::chrono::microseconds(20 * (round % 25)));
    router.close();
  }
  expectEveryThreadToHaveEnded();
  EXPECT_EQ(told("entered receive thread"), static_cast<std::size_t>(kRounds));
  EXPECT_EQ(told("Didn't get packet"), 0U);
  EXPECT_EQ(told("Sending cancel command to zwave_server"), 0U);
  EXPECT_EQ(events(EVENT_TIMEOUT), 0);
  EXPECT_LE(events(EVENT_ADDING), kRounds);
}

TEST_F(Closing, AndOpeningAThousandTimesUnderTrafficKeepsOneReceiver) {
  constexpr std::size_t kRounds = 1000;
  connect();
  const std::size_t descriptors = openDescriptors();
  const std::size_t threads = runningThreads();
  {
    const Background traffic([this](int turn) { sendTraffic(turn); });
    for (std::size_t round = 0; round < kRounds; ++round) {
      assoc.addDevZigbeeZwave();
      assoc.closeAssocConnection();
      ASSERT_EQ(assoc.checkAssocConnection(), 0) << "round " << round;
    }
  }
  await("exited receive thread", kRounds);
  awaitThreads(threads);
  awaitDescriptors(descriptors);
  EXPECT_EQ(told("entered receive thread"), kRounds + 1);
  EXPECT_EQ(told("exited receive thread"), kRounds);
  EXPECT_EQ(told("Didn't get packet"), 0U);
  EXPECT_EQ(events(EVENT_TIMEOUT), 0);
  router.close();
  expectEveryThreadToHaveEnded();
}

// One thread opens, another closes at moments of its own: in the middle of an opening, too.
TEST_F(Closing, FromAnotherThreadLeavesNothingBehind) {
  const std::size_t descriptors = openDescriptors();
  const std::size_t threads = runningThreads();
  {
    const Background traffic([this](int turn) { sendTraffic(turn); });
    const Background opener([this](int) { assoc.checkAssocConnection(); });
    const Background closer([this](int turn) {
      std::this_thread::sleep_for(std::chrono::milliseconds(turn % 10));
      assoc.closeAssocConnection();
    });
    await("entered receive thread", 20);
  }
  router.close();
  expectEveryThreadToHaveEnded();
  awaitThreads(threads);
  awaitDescriptors(descriptors);
  EXPECT_EQ(events(EVENT_TIMEOUT), 0);
}
