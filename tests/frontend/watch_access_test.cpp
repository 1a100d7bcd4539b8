// Where the socket of the watchers lies, whose it may be, and who may connect.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <tembra/watch.h>

#include <fstream>

#include "watch_faults.h"

namespace tembra::test {
namespace {

namespace fs = std::filesystem;

using frontend::WatchServer;

constexpr gid_t kGroup = 4711;
constexpr uid_t kStranger = 4712;

mode_t rightsOf(const std::string& path) {
  struct stat status {};
  return lstat(path.c_str(), &status) == 0 ? status.st_mode & 07777 : 0;
}

/// What a server at that path complains of, without the path.
std::string complaint(const std::string& path) {
  Host host;
  WatchServer server(path, {}, host);
  server.publish(1, "{}");  // and nothing happens
  std::string error = server.error();
  const std::size_t at = error.find(path);
  if (at != std::string::npos && !path.empty()) error.replace(at, path.size(), "PATH");
  return error;
}

/// A socket file whose process is dead.
void leaveDeadSocket(const std::string& path, int type = SOCK_STREAM) {
  const Descriptor socket(::socket(AF_UNIX, type | SOCK_CLOEXEC, 0));
  const sockaddr_un address = addressOf(path);
  ASSERT_EQ(bind(socket.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
}

class WatchPlace : public ::testing::Test {
 protected:
  void makeFolder() const { fs::create_directory(place_.folder()); }

  /// A server at the place, and a watcher that it serves.
  void expectServed() const {
    Host host;
    const WatchServer server(place_.socket(), {}, host);
    EXPECT_EQ(server.error(), "");
    EXPECT_NE(PlainWatcher(place_.socket()).hear(), "(end)");
  }

  Place place_;
};

TEST_F(WatchPlace, FolderAndFileAreForOneGroupWhateverTheMaskSays) {
  for (const mode_t mask : {0U, 022U, 0777U}) {
    const mode_t before = umask(mask);
    Host host;
    const WatchServer server(place_.socket(), {}, host);
    umask(before);
    EXPECT_EQ(server.error(), "");
    EXPECT_EQ(rightsOf(place_.folder()), 0750U);
    EXPECT_EQ(rightsOf(place_.socket()), 0660U);
    EXPECT_EQ(watchFaults().rightsAtFirst & 0077U, 0U);  // nobody else's until it has its group
    fs::remove(place_.socket());
    fs::remove(place_.folder());
  }
}

TEST_F(WatchPlace, AFolderThatIsThereKeepsItsRights) {
  makeFolder();
  fs::permissions(place_.folder(), fs::perms(0711));
  expectServed();
  EXPECT_EQ(rightsOf(place_.folder()), 0711U);
  EXPECT_TRUE(fs::is_empty(place_.folder()));
}

TEST_F(WatchPlace, ADeadHoldersFileKeepsNobodyFromServing) {
  makeFolder();
  for (const int type : {SOCK_STREAM, SOCK_DGRAM, SOCK_SEQPACKET}) {
    leaveDeadSocket(place_.socket(), type);
    expectServed();
  }
  OtherProcess holder([this] {
    auto* const host = new Host;
    new WatchServer(place_.socket(), {}, *host);
  });
  holder.die();
  EXPECT_TRUE(fs::exists(place_.socket()));
  expectServed();
}

TEST_F(WatchPlace, ADeadHoldersChildKeepsNobodyFromServing) {
  int child[2];
  ASSERT_EQ(pipe(child), 0);
  OtherProcess holder([&] {
    auto* const host = new Host;
    new WatchServer(place_.socket(), {}, *host);
    const pid_t orphan = fork();  // it has the listening socket, too
    if (orphan == 0) pause();
    if (write(child[1], &orphan, sizeof orphan) != sizeof orphan) std::abort();
  });
  holder.die();
  pid_t orphan = 0;
  ASSERT_EQ(read(child[0], &orphan, sizeof orphan), static_cast<ssize_t>(sizeof orphan));
  EXPECT_EQ(PlainWatcher(place_.socket()).failure(), 0);
  EXPECT_EQ(tembra_watch_open(place_.socket().c_str()), nullptr);
  EXPECT_EQ(errno, ENOENT);
  expectServed();
  kill(orphan, SIGKILL);
}

TEST_F(WatchPlace, WhatIsNoSocketStaysAsItIs) {
  makeFolder();
  const std::string path = place_.socket();
  const std::string target = place_.top() + "/target";
  const auto link = [&] { fs::create_symlink(target, path); };
  const struct {
    const char* what;
    std::function<void()> make;
  } rows[] = {
      {"a file", [&] { std::ofstream(path) << "text"; }},
      {"a folder", [&] { fs::create_directory(path); }},
      {"a pipe", [&] { ASSERT_EQ(mkfifo(path.c_str(), 0600), 0); }},
      {"a link to nothing", link},
      {"a link to a file", [&] { link(), std::ofstream(target) << "text"; }},
      {"a link to a dead socket", [&] { link(), leaveDeadSocket(target); }},
  };
  for (const auto& row : rows) {
    row.make();
    struct stat before {};
    ASSERT_EQ(lstat(path.c_str(), &before), 0) << row.what;
    const bool hasTarget = fs::exists(fs::symlink_status(target));
    EXPECT_EQ(complaint(path), "nobody can watch: PATH is no socket") << row.what;
    struct stat after {};
    ASSERT_EQ(lstat(path.c_str(), &after), 0) << row.what;
    EXPECT_EQ(after.st_ino, before.st_ino) << row.what;
    EXPECT_EQ(after.st_mode, before.st_mode) << row.what;
    EXPECT_EQ(fs::exists(fs::symlink_status(target)), hasTarget) << row.what;
    fs::remove(path);
    fs::remove(target);
  }
}

TEST_F(WatchPlace, AnotherProgramThatServesThereGoesOn) {
  Host host;
  WatchServer first(place_.socket(), {}, host);
  EXPECT_EQ(complaint(place_.socket()), "nobody can watch: another program serves PATH");
  PlainWatcher watcher(place_.socket());
  EXPECT_NE(watcher.hear(), "(end)");
  first.publish(1, "{}");
  EXPECT_EQ(watcher.hear(), "{}");
}

TEST_F(WatchPlace, AFileThatTookTheSocketsPlaceIsNotRemoved) {
  {
    Host host;
    const WatchServer server(place_.socket(), {}, host);
    fs::remove(place_.socket());
    std::ofstream(place_.socket()) << "text";
  }
  EXPECT_EQ(fs::file_size(place_.socket()), 4U);
}

TEST_F(WatchPlace, AFolderThatOthersControlIsRefused) {
  const std::string folder = place_.folder();
  const auto path = [](const std::string& in) { return in + "/front-end"; };
  const std::string link = place_.top() + "/link";
  fs::create_directory(place_.top() + "/real");
  fs::create_symlink(place_.top() + "/real", link);
  EXPECT_NE(complaint(path(link)).find("is a link or no folder, or everybody may write to it"), std::string::npos);
  EXPECT_TRUE(fs::is_empty(place_.top() + "/real"));

  makeFolder();
  for (const mode_t rights : {0777U, 01777U, 0772U}) {
    chmod(folder.c_str(), rights);
    EXPECT_NE(complaint(path(folder)).find("is a link or no folder, or everybody may write to it"), std::string::npos);
    EXPECT_EQ(rightsOf(folder), rights);
  }
}

TEST_F(WatchPlace, APathThatCannotBeServedIsRefused) {
  const std::string absolute = "is not absolute, or too long for a socket";
  const std::string top = place_.top();
  EXPECT_NE(complaint("front-end").find(absolute), std::string::npos);
  EXPECT_FALSE(fs::exists("front-end"));
  EXPECT_NE(complaint("").find(absolute), std::string::npos);
  EXPECT_NE(complaint(top + "/" + std::string(108, 'x')).find(absolute), std::string::npos);
  EXPECT_NE(complaint(top + "/none/none/front-end").find("No such file or directory"), std::string::npos);
  std::ofstream(top + "/file") << "text";
  EXPECT_NE(complaint(top + "/file/front-end").find("is a link or no folder"), std::string::npos);
}

TEST_F(WatchPlace, AShortageIsNoReasonToFail) {
  for (const char* const call : {"socket", "eventfd", "pthread_create"}) {
    watchFaults().failing = call;
    const std::string said = complaint(place_.socket());
    watchFaults().failing.clear();
    EXPECT_NE(said.find("Too many open files"), std::string::npos) << call << ": " << said;
    EXPECT_FALSE(fs::exists(place_.socket())) << call;
  }
  expectServed();
}

TEST_F(WatchPlace, OnlyRootTheSameUserAndTheGroupMayWatch) {
  Host host;
  const WatchServer server(place_.socket(), {}, host);
  struct stat file {};
  ASSERT_EQ(lstat(place_.socket().c_str(), &file), 0);
  const gid_t group = file.st_gid;
  constexpr uid_t kSelf = 4713;
  const struct {
    User peer;
    bool may;
  } rows[] = {
      {{0, kGroup, kGroup}, true},          {{kSelf, kGroup, kGroup}, true},
      {{kStranger, group, kGroup}, true},   {{kStranger, kGroup, group}, true},
      {{kStranger, kGroup, kGroup}, false}, {{kSelf + 1, group + 1, group + 2}, false},
  };
  for (const auto& row : rows) {
    PlainWatcher watcher(place_.socket());
    EXPECT_NE(watcher.hear().find("holder"), std::string::npos);  // the kernel's own answer
    watchFaults().self = kSelf;
    watchFaults().peer = row.peer;
    PlainWatcher judged(place_.socket());
    const std::string line = judged.hear();
    watchFaults().peer.reset();
    watchFaults().self.reset();
    EXPECT_EQ(line.find("\"holder\"") != std::string::npos, row.may) << line;
    if (row.may) continue;
    judged.say("cancel\n");
    EXPECT_EQ(line, R"({"schema":1,"error":"not permitted"})");
    EXPECT_EQ(judged.hear(), "(end)");
  }
  EXPECT_EQ(host.cancels, 0);
}

// With real users, first as the rights of folder and file have it, then when somebody has opened both to everybody.
TEST_F(WatchPlace, OtherUsersOfTheRouterAreKeptOut) {
  if (as({kStranger, kStranger, kStranger}, [] { return 0; }) == -1) {
    // A user namespace of one user: there is nobody else, and the table above has to do.
    std::ifstream map("/proc/self/uid_map");
    long inside = -1;
    long outside = -1;
    long count = -1;
    map >> inside >> outside >> count;
    ASSERT_EQ(count, 1);
    return;
  }
  makeFolder();
  chmod(place_.folder().c_str(), 0750);
  ASSERT_EQ(chown(place_.folder().c_str(), 0, kGroup), 0);
  Host host;
  const WatchServer server(place_.socket(), {}, host);
  ASSERT_EQ(server.error(), "");
  struct stat file {};
  ASSERT_EQ(lstat(place_.socket().c_str(), &file), 0);
  EXPECT_EQ(file.st_gid, kGroup);

  const auto heard = [this] {  // 0: the state, 1: it may not, 2: it may not even connect
    PlainWatcher watcher(place_.socket());
    if (watcher.failure() != 0) return watcher.failure() == EACCES ? 2 : 3;
    return watcher.hear().find("\"holder\"") != std::string::npos ? 0 : 1;
  };
  EXPECT_EQ(as({kStranger, kStranger, kStranger}, heard), 2);
  EXPECT_EQ(as({kStranger, kGroup, kStranger}, heard), 0);
  EXPECT_EQ(as({kStranger, kStranger, kGroup}, heard), 0);
  chmod(place_.folder().c_str(), 0755);
  chmod(place_.socket().c_str(), 0666);
  EXPECT_EQ(as({kStranger, kStranger, kStranger}, heard), 1);
  EXPECT_EQ(as({kStranger, kStranger, kGroup}, heard), 0);
}

TEST_F(WatchPlace, AnotherUsersFolderIsRefused) {
  makeFolder();
  if (chown(place_.folder().c_str(), kStranger, kGroup) != 0) {
    ASSERT_EQ(errno, EINVAL);  // a user namespace of one user: nobody else can own a folder
    return;
  }
  EXPECT_NE(complaint(place_.socket()).find("belongs to another user"), std::string::npos);
}

}  // namespace
}  // namespace tembra::test
