// One session at a time: between processes by the file's lock, between threads by the library's own turns.
#include <depot.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <tembra/globals.h>
#include <unistd.h>

#include <atomic>
#include <filesystem>
#include <fstream>
#include <functional>
#include <sstream>
#include <string>
#include <thread>

#include "kit/interposed_database.h"
#include "kit/router.h"

using kit::Device;
using kit::lines;
using kit::Router;

namespace {

// Another process that opens the database, and holds it until it is told to put a record and to let go.
class Holder {
 public:
  Holder(const std::string& key, const kit::Bytes& value) {
    EXPECT_EQ(pipe(held_), 0);
    EXPECT_EQ(pipe(letGo_), 0);
    child_ = fork();
    if (child_ == 0) _exit(hold(key, value));
    await(held_[0]);
  }
  ~Holder() {
    for (const int end : {held_[0], held_[1], letGo_[0], letGo_[1]}) close(end);
  }
  Holder(const Holder&) = delete;
  Holder& operator=(const Holder&) = delete;

  void letGo() {
    EXPECT_EQ(write(letGo_[1], "x", 1), 1);
    int status = -1;
    EXPECT_EQ(waitpid(child_, &status, 0), child_);
    EXPECT_EQ(status, 0) << "the other process failed";
  }

 private:
  static void await(int end) {
    char byte = 0;
    EXPECT_EQ(read(end, &byte, 1), 1);
  }

  [[nodiscard]] int hold(const std::string& key, const kit::Bytes& value) const {
    const kit::OpenDatabase database;
    if (write(held_[1], "x", 1) != 1) return 1;
    char byte = 0;
    if (read(letGo_[0], &byte, 1) != 1) return 2;
    database.put(key, value);
    return 0;
  }

  int held_[2] = {-1, -1};
  int letGo_[2] = {-1, -1};
  pid_t child_ = -1;
};

// Whether somebody waits for the lock of the database file.
bool isAwaited() {
  struct stat file {};
  if (stat(DBName, &file) != 0) return false;
  const std::string inode = ":" + std::to_string(file.st_ino) + " ";
  std::ifstream locks("/proc/locks");
  for (std::string line; std::getline(locks, line);) {
    if (line.find("->") != std::string::npos && line.find(inode) != std::string::npos) return true;
  }
  return false;
}

void awaitAWaiter() {
  while (!isAwaited()) usleep(1000);
}

}  // namespace

TEST(DatabaseSessionsTest, ALookUpWaitsForTheOtherProcessAndSeesWhatItWrote) {
  Router router;
  TembraAssociation& assoc = router.assoc();
  router.database().create();
  Holder server("3", Device(3, "Lamp").zwave(5).bytes());
  assoc.zwNodeRx.nodeId = 5;
  int found = -1;
  std::thread caller([&] { found = assoc.ZW_checkNodeExists(); });
  awaitAWaiter();
  server.letGo();
  caller.join();
  EXPECT_EQ(found, 1);
  EXPECT_STREQ(assoc.removedName, "Lamp");
}

TEST(DatabaseSessionsTest, OthersAreServedWhileALookUpWaits) {
  Router router;
  TembraAssociation& assoc = router.connect();
  router.database().create();
  Holder server("NextDevid", {'1', '7'});
  std::atomic<int> id = -99;
  std::thread caller([&] { id = assoc.calculateDevId(); });
  awaitAWaiter();
  assoc.addDevZigbeeZwave();
  assoc.sendCancelTo(cancel_both);
  EXPECT_EQ(router.takeSends().size(), 4U);
  EXPECT_EQ(id, -99);
  server.letGo();
  caller.join();
  EXPECT_EQ(id, 17);
}

TEST(DatabaseSessionsTest, ADatagramWaitsForTheDatabaseAndACallerDoesNot) {
  Router router;
  TembraAssociation& assoc = router.connect();
  router.database().create();
  assoc.addDevZigbeeZwave();
  router.zwave().send(kit::Node(5));
  router.forget();
  Holder server("3", Device(3, "Lamp").zwave(5).bytes());
  router.zwave().post(kit::Node(5).bytes());
  awaitAWaiter();
  assoc.setDevName(const_cast<char*>("Plug"));
  EXPECT_STREQ(assoc.devName, "Plug");
  EXPECT_TRUE(router.takeEvents().empty());
  server.letGo();
  router.settle();
  ASSERT_EQ(router.takeEvents().at(0).event.code, EVENT_ALREADY_ADDED);
}

namespace {

const std::string kSession = lines({"dpopen /tmp/ddb 6 -1", "dpclose"});
const std::string kRepairingSession = lines({"dpopen /tmp/ddb 6 -1 -> failed", "stderr dpopen: broken database file",
                                             "dprepair /tmp/ddb", "dpopen /tmp/ddb 70 1", "dpclose"});

std::string withoutLogLines(const std::string& trace) {
  std::string rest;
  std::istringstream stream(trace);
  for (std::string line; std::getline(stream, line);) rest += line.rfind("log ", 0) == 0 ? "" : line + "\n";
  return rest;
}

void repeat(int times, const std::function<int()>& call, int expected) {
  int right = 0;
  for (int i = 0; i < times; ++i) right += call() == expected ? 1 : 0;
  EXPECT_EQ(right, times);
}

// The same call from two threads at once.
void callTwice(const std::function<int()>& call, int expected) {
  std::thread other([&] { repeat(1, call, expected); });
  repeat(1, call, expected);
  other.join();
}

}  // namespace

TEST(DatabaseSessionsTest, TwoThreadsNeverHaveTwoSessions) {
  constexpr int kRounds = 200;
  Router router;
  TembraAssociation& assoc = router.assoc();
  router.database().nextId("17").put(Device(3, "Lamp").zwave(5));
  assoc.zwNodeRx.nodeId = 5;
  router.onLog([](const std::string&) { std::this_thread::yield(); });  // while a session is open
  router.watch(kit::kWatchDatabase);
  std::thread other([&] {
    repeat(
        kRounds, [&] { return assoc.ZW_checkNodeExists(); }, 1);
  });
  repeat(
      kRounds, [&] { return assoc.calculateDevId(); }, 17);
  other.join();
  std::string sessions;
  for (int i = 0; i < 2 * kRounds; ++i) sessions += kSession;
  EXPECT_EQ(withoutLogLines(router.takeTrace()), sessions);
}

TEST(DatabaseSessionsTest, RepairingIsPartOfTheSession) {
  Router router;
  TembraAssociation& assoc = router.assoc();
  router.database().nextId("17");
  router.watch(kit::kWatchDatabase);
  for (int i = 0; i < 30; ++i) {
    router.database().makeRepairable();
    callTwice([&] { return assoc.calculateDevId(); }, 17);
    EXPECT_EQ(router.takeTrace(), kRepairingSession + kSession) << "round " << i;
  }
}

TEST(DatabaseSessionsTest, ALoggerThatCallsTheLibraryBackGetsNoSecondSession) {
  Router router;
  TembraAssociation& assoc = router.assoc();
  router.database().nextId("17").put(Device(3, "Lamp").zwave(5));
  assoc.zwNodeRx.nodeId = 5;
  int id = 0;
  router.onLog([&](const std::string&) { id = assoc.calculateDevId(); });
  router.watch(kit::kWatchDatabase);
  EXPECT_EQ(assoc.ZW_checkNodeExists(), 1);
  EXPECT_EQ(withoutLogLines(router.takeTrace()), kSession);
  EXPECT_EQ(id, -1);
}

namespace {

// Whether a child of this process would inherit the database; -1 when it is not open.
int isInherited() {
  for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
    std::error_code gone;
    if (std::filesystem::read_symlink(entry.path(), gone) != DBName) continue;
    return (fcntl(std::stoi(entry.path().filename()), F_GETFD) & FD_CLOEXEC) == 0 ? 1 : 0;
  }
  return -1;
}

}  // namespace

TEST(DatabaseSessionsTest, ProgramsThatAreStartedMeanwhileDoNotInheritTheFile) {
  Router router;
  TembraAssociation& assoc = router.assoc();
  router.database().put(Device(3, "Lamp").zwave(5));
  assoc.zwNodeRx.nodeId = 5;
  int inherited = -1;
  router.onLog([&](const std::string&) { inherited = isInherited(); });
  EXPECT_EQ(assoc.ZW_checkNodeExists(), 1);
  EXPECT_EQ(inherited, 0);
  EXPECT_EQ(isInherited(), -1);
}

TEST(DatabaseSessionsTest, NoDescriptorStaysOpen) {
  Router router;
  TembraAssociation& assoc = router.assoc();
  router.database().nextId("17").put(Device(3, "Lamp").zwave(5));
  const auto nextDescriptor = [] {
    const int descriptor = dup(0);
    close(descriptor);
    return descriptor;
  };
  const int before = nextDescriptor();
  void (*const damages[])(kit::Database&) = {
      [](kit::Database& database) { database.create(); },
      [](kit::Database& database) { database.makeRepairable(); },
      [](kit::Database& database) { database.breakRecord("3"); },
      [](kit::Database& database) { database.makeUnopenable(); },
      [](kit::Database& database) { database.makeDirectory(); },
  };
  for (const auto damage : damages) {
    damage(router.database());
    assoc.ZW_checkNodeExists();
    assoc.calculateDevId();
    EXPECT_EQ(nextDescriptor(), before);
  }
}
