// Every function on two threads, while devices join and another process stores them.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <tembra/service.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <thread>
#include <vector>

#include "receiver/background.h"
#include "receiver/kernel_stage.h"

using kit::Device;
using kit::Node;

namespace {

constexpr int kDevices = 150;

// Without the parent's threads, which do not exist here.
pid_t storeDevices(kit::Database& database) {
  const pid_t process = fork();
  if (process != 0) return process;
  for (int id = 1; id <= kDevices; ++id) {
    database.put(Device(id, "Lamp").zwave(static_cast<unsigned>(id))).index(id, 1, "on");
    usleep(2'000);
  }
  _exit(0);
}

// The list only grows, and none of it is ever half of a device.
long readOnce(std::vector<tembra_device>& devices) {
  const long count = tembra_read_devices(devices.data(), sizeof(tembra_device), devices.size());
  EXPECT_GE(count, 0) << errno;
  for (std::size_t i = 0; i < static_cast<std::size_t>(std::max(count, 0L)); ++i) {
    EXPECT_EQ(devices[i].address, static_cast<unsigned>(devices[i].id));
    EXPECT_STREQ(devices[i].name, "Lamp");
  }
  return count;
}

void askTheRest() {
  const int settled = tembra_settle(20);
  EXPECT_TRUE(settled == 0 || settled == ETIMEDOUT);
  EXPECT_LE(tembra_wait_left(), 180'000);
  tembra_failure failure{};
  failure.size = sizeof failure;
  for (const int kind : {TEMBRA_FAILURE_SEND, TEMBRA_FAILURE_OPENING}) {
    EXPECT_EQ(tembra_last_failure(kind, &failure), 0);
    EXPECT_EQ(failure.count, 0U);
  }
  struct tembra_database_history history = {sizeof history, 77, 77};
  EXPECT_EQ(tembra_read_database_history(&history), 0);
  EXPECT_EQ(history.repaired + history.lost, 0U);
}

class Asking {
 public:
  void operator()(int /*turn*/) {
    const long now = readOnce(devices_);
    EXPECT_GE(now, count_);
    count_ = now;
    askTheRest();
  }

 private:
  std::vector<tembra_device> devices_{kDevices};
  long count_ = 0;
};

using Threads = KernelStage;

}  // namespace

TEST_F(Threads, MayAskWhileDevicesJoinAndAreStored) {
  router.database().nextId("17");
  const pid_t storing = storeDevices(router.database());
  connect();
  {
    const Background first{Asking()};
    const Background second{Asking()};
    for (int turn = 0; waitpid(storing, nullptr, WNOHANG) == 0; ++turn) {
      assoc.addDevZigbeeZwave();
      for (int i = 0; i < 3; ++i) {
        router.zwave().post(Node(static_cast<unsigned char>(200 + turn % 50)).generic(0x10).specific(1).bytes());
      }
      std::this_thread::sleep_for(std::chrono::milliseconds(5));
      assoc.sendCancelTo(cancel_both);
      if (turn % 16 == 15) {
        assoc.closeAssocConnection();
        connect();
      }
    }
  }
  EXPECT_EQ(tembra_settle(10'000), 0);
  EXPECT_GT(events(EVENT_SELECT_TYPE), 0);
  std::vector<tembra_device> devices(kDevices);
  EXPECT_EQ(readOnce(devices), kDevices);
  EXPECT_TRUE(std::all_of(devices.begin(), devices.end(), [](const tembra_device& d) { return d.values == 1; }));
  router.close();
}
