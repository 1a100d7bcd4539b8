// The devices of a real database file.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <tembra/service.h>
#include <unistd.h>
#include <csignal>

#include <cerrno>
#include <chrono>
#include <climits>
#include <cstring>
#include <string>
#include <thread>
#include <vector>

#include "device_text.h"
#include "kit/lock_holder.h"
#include "kit/router_test.h"

using kit::Device;
using kit::LockHolder;
using service::textOf;

namespace {

using Devices = kit::RouterTest;

constexpr std::size_t kRoom = 8;

struct List {
  long result = 0;
  int error = 0;
  std::vector<tembra_device> devices{kRoom};
};

List read(std::size_t room = kRoom) {
  List list;
  std::memset(static_cast<void*>(list.devices.data()), 0x77, kRoom * sizeof(tembra_device));
  errno = 0;
  list.result = tembra_read_devices(list.devices.data(), sizeof(tembra_device), room);
  list.error = errno;
  return list;
}

std::string first(const List& list) { return textOf(list.devices.at(0)); }

}  // namespace

TEST_F(Devices, AreToldInTheOrderOfTheFile) {
  router.database()
      .nextId("40")
      .put("Version", "3")
      .put(Device(12, "Lamp").zwave(5).type("BinarySwitch"))
      .index(12, 1, "on")
      .put(Device(3, "Door").zigbee(0x1234).type("ContactSwitch"))
      .index(3, 1, "open")
      .index(3, 2, "21.5")
      .put("02:a1:b2:01:02:03", "ann")
      .put("sensor.1", "x")
      .put(Device(39, "Bulb").ip().type("HueLamp"))
      .put(Device(38, "Remote").type("No such type"));
  const List list = read();
  EXPECT_EQ(list.result, 4);
  EXPECT_EQ(textOf(list.devices.at(0)), "12 Lamp, 1 BinarySwitch, radio 2 at 5, values 1");
  EXPECT_EQ(textOf(list.devices.at(1)), "3 Door, 12 ContactSwitch, radio 1 at 4660, values 2");
  EXPECT_EQ(textOf(list.devices.at(2)), "39 Bulb, 66 HueLamp, radio 3 at 0, values 0");
  EXPECT_EQ(textOf(list.devices.at(3)), "38 Remote, 0 No such type, radio 0 at 0, values 0");
}

TEST_F(Devices, MayStandBehindTheirValuesAndBetweenHoles) {
  router.database().index(7, 1, "1").index(7, 2, "2").put(Device(6, "Gone")).put(Device(7, "Lamp").zwave(5)).drop("6");
  router.database().put(Device(8, "Other")).index(7, 3, "3").index(9, 1, "nobody's").drop("7.1");
  const List list = read();
  EXPECT_EQ(list.result, 2);
  EXPECT_EQ(textOf(list.devices.at(0)), "7 Lamp, 0 , radio 2 at 5, values 2");
  EXPECT_EQ(textOf(list.devices.at(1)), "8 Other, 0 , radio 0 at 0, values 0");
}

TEST_F(Devices, MayHaveTextsWithoutANulAndShortValues) {
  router.database().put(Device(1, std::string(360, 'n')).type(std::string(72, 't'))).put(Device(2, "Cut").cutTo(6));
  router.database().put("3", std::string());
  const List list = read();
  EXPECT_EQ(list.result, 3);
  EXPECT_EQ(textOf(list.devices.at(0)),
            "1 " + std::string(360, 'n') + ", 0 " + std::string(72, 't') + ", radio 0 at 0, values 0");
  EXPECT_EQ(textOf(list.devices.at(1)), "2 Cu, 0 , radio 0 at 0, values 0");
  EXPECT_EQ(textOf(list.devices.at(2)), "3 , 0 , radio 0 at 0, values 0");
}

TEST_F(Devices, HaveTheKeysThatAreIds) {
  for (const char* key : {"", " 1", "1 ", "-1", "+1", "0x1", "1x", "NextDevid", "Version", "2147483648", "99999999999",
                          "111111111111", "1111111111111111111111", ".", ".1", "x.1"}) {
    router.database().put(key, "value");
  }
  EXPECT_EQ(read().result, 0);
  router.database().put(Device(INT_MAX, "Last")).index(INT_MAX, 255, "x").put("111111111111.1", "nobody's");
  const List list = read();
  EXPECT_EQ(list.result, 1);
  EXPECT_EQ(first(list), "2147483647 Last, 0 , radio 0 at 0, values 1");
}

TEST_F(Devices, AreCountedWhereTheRoomIsTooSmall) {
  for (int id = 1; id <= 5; ++id) router.database().put(Device(id, "Lamp").zwave(1)).index(id, 1, "x");
  EXPECT_EQ(tembra_read_devices(nullptr, sizeof(tembra_device), 0), 5);
  const List list = read(2);
  EXPECT_EQ(list.result, 5);
  EXPECT_EQ(textOf(list.devices.at(1)), "2 Lamp, 0 , radio 2 at 1, values 1");
  EXPECT_EQ(list.devices.at(2).id, 0x77777777) << "not touched";
}

TEST_F(Devices, OfALaterVersionHaveTheirOwnDistance) {
  router.database().put(Device(1, "A")).put(Device(2, "B")).index(2, 1, "x");
  struct Longer {
    tembra_device known;
    int added[10];
  } devices[2];
  EXPECT_EQ(tembra_read_devices(&devices[0].known, sizeof(Longer), 2), 2);
  EXPECT_EQ(textOf(devices[1].known), "2 B, 0 , radio 0 at 0, values 1");
  EXPECT_EQ(devices[0].added[9], 0);
  errno = 0;
  EXPECT_EQ(tembra_read_devices(&devices[0].known, sizeof(tembra_device) - 1, 2), -1);
  EXPECT_EQ(errno, EINVAL);
}

TEST_F(Devices, OfAFileThatIsMissingOrEmptyAreNone) {
  EXPECT_EQ(read().result, 0);
  EXPECT_FALSE(router.database().exists()) << "it is not created";
  router.database().replaceWith({});
  EXPECT_EQ(read().result, 0);
  EXPECT_TRUE(router.database().file().empty());
  router.database().remove();
  router.database().create();
  EXPECT_EQ(read().result, 0);
}

// A file that is only read: also one that the process may not write.
TEST_F(Devices, AreReadWithoutTheRightToWrite) {
  router.database().put(Device(1, "A"));
  ASSERT_EQ(chmod(DBName, 0444), 0);
  EXPECT_EQ(read().result, 1);
  ASSERT_EQ(chmod(DBName, 0666), 0);
}

TEST_F(Devices, OfWhatCannotBeOpenedAreAnError) {
  ASSERT_EQ(symlink("/tmp/ddb", "/tmp/ddb"), 0);
  List list = read();
  EXPECT_EQ(list.result, -1);
  EXPECT_EQ(list.error, ELOOP);
  EXPECT_EQ(list.devices.at(0).id, 0) << "nothing that is not there is shown";
  ASSERT_EQ(unlink("/tmp/ddb"), 0);
  ASSERT_EQ(mknod("/tmp/ddb", S_IFSOCK | S_IRUSR | S_IWUSR, 0), 0);
  list = read();
  EXPECT_EQ(list.result, -1);
  EXPECT_EQ(list.error, EINVAL);
  ASSERT_EQ(unlink("/tmp/ddb"), 0);
  router.database().makeDirectory();
  list = read();
  EXPECT_EQ(list.result, -1);
  EXPECT_EQ(list.error, EISDIR);
}

TEST_F(Devices, AreInAFileThatTheLibraryCouldOpen) {
  EXPECT_EQ(tembra_check_database(), 0) << "there is no file";
  EXPECT_NE(access("/tmp/ddb", F_OK), 0) << "and none is made";
  router.database().put(Device(1, "A"));
  EXPECT_EQ(tembra_check_database(), 0);
  LockHolder holder;
  EXPECT_EQ(tembra_check_database(), 0) << "another process's lock is not waited for";
}

TEST_F(Devices, AreInNoFolder) {
  router.database().makeDirectory();
  EXPECT_EQ(tembra_check_database(), EISDIR);
}

// A signal does not end the wait.
TEST_F(Devices, AreWaitedForWhileAnotherProcessWrites) {
  router.database().put(Device(1, "A"));
  struct sigaction ignored = {};
  ignored.sa_handler = [](int) {};
  sigaction(SIGUSR1, &ignored, nullptr);
  LockHolder holder;
  const auto begin = std::chrono::steady_clock::now();
  std::thread later([&holder, reader = pthread_self()] {
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    pthread_kill(reader, SIGUSR1);
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    holder.release();
  });
  EXPECT_EQ(read().result, 1);
  EXPECT_GE(std::chrono::steady_clock::now() - begin, std::chrono::milliseconds(90));
  later.join();
}

// The wait for the file holds nobody up but those who want the file, too.
TEST_F(Devices, AreWaitedForWithoutTheLibrarysLock) {
  router.connect();
  router.database().put(Device(1, "A"));
  LockHolder holder;
  std::thread reading([] { EXPECT_EQ(read().result, 1); });
  std::this_thread::sleep_for(std::chrono::milliseconds(50));
  router.assoc().setDevName(const_cast<char*>("Lamp"));
  EXPECT_GT(tembra_wait_left(), 0);
  holder.release();
  reading.join();
}

// The Logger may call the library back: while its thread has the database it gets no second session.
TEST_F(Devices, AreRefusedToAThreadThatHasTheDatabase) {
  router.connect();
  router.database().put(Device(1, "A").zwave(5));
  long result = 0;
  int error = 0;
  router.onLog([&](const std::string& text) {
    if (text.find("Removing Zwave device") == std::string::npos) return;
    const List list = read();
    result = list.result;
    error = list.error;
  });
  router.assoc().zwNodeRx.nodeId = 5;
  router.assoc().ZW_removeNode();
  EXPECT_EQ(result, -1);
  EXPECT_EQ(error, EDEADLK);
  EXPECT_EQ(read().result, 1);
}
