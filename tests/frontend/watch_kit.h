// What the tests of watching are made of: a host that can be asked, a watcher that speaks plain bytes, a folder of its
// own, and processes that hold the socket and die.
#ifndef TEMBRA_TESTS_FRONTEND_WATCH_KIT_H
#define TEMBRA_TESTS_FRONTEND_WATCH_KIT_H

#include <grp.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <functional>
#include <mutex>
#include <string>
#include <thread>

#include "watch/watch_server.h"

namespace tembra::test {

constexpr int kLong = 20000;  ///< milliseconds after which something will never come

/// Waits until the condition holds. @return false: it never did
inline bool comesTrue(const std::function<bool()>& condition) {
  const auto until = std::chrono::steady_clock::now() + std::chrono::milliseconds(kLong);
  while (!condition()) {
    if (std::chrono::steady_clock::now() > until) return false;
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
  return true;
}

class Host : public frontend::WatchServer::Host {
 public:
  frontend::WatchServer::State state() override {
    ++asked_;
    const std::lock_guard turn(turn_);  // a test that takes it makes the server's thread wait
    const unsigned last = lastEvent;
    return {R"({"operation":"add","phase":"button","last_event":)" + std::to_string(last) + "}", last};
  }
  void cancelAsked() override { ++cancels; }

  [[nodiscard]] int asked() const { return asked_; }
  [[nodiscard]] std::mutex& turn() { return turn_; }

  std::atomic<int> cancels = 0;
  std::atomic<unsigned> lastEvent = 0;

 private:
  std::mutex turn_;
  std::atomic<int> asked_ = 0;
};

/// A folder for the socket, which the server makes.
class Place {
 public:
  Place() {
    char pattern[] = "/tmp/watch-XXXXXX";
    top_ = mkdtemp(pattern);
    chmod(top_.c_str(), 0755);
  }
  ~Place() { std::filesystem::remove_all(top_); }
  Place(const Place&) = delete;
  Place& operator=(const Place&) = delete;

  [[nodiscard]] const std::string& top() const { return top_; }
  [[nodiscard]] std::string folder() const { return top_ + "/served"; }
  [[nodiscard]] std::string socket() const { return folder() + "/front-end"; }

 private:
  std::string top_;
};

inline sockaddr_un addressOf(const std::string& path) {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  std::memcpy(address.sun_path, path.c_str(), path.size() + 1);
  return address;
}

/// A watcher without the library's client.
class PlainWatcher {
 public:
  explicit PlainWatcher(const std::string& path) : socket_(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    const sockaddr_un address = addressOf(path);
    failure_ = connect(socket_.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0 ? 0 : errno;
  }

  [[nodiscard]] int failure() const { return failure_; }  ///< errno of connect
  void say(const std::string& text) const { send(socket_.get(), text.data(), text.size(), MSG_NOSIGNAL); }
  void sayNoMore() const { shutdown(socket_.get(), SHUT_WR); }

  /// The next line; "(end)" when the other end closed the connection, "(nothing)" when nothing comes.
  [[nodiscard]] std::string hear() {
    while (heard_.find('\n') == std::string::npos) {
      pollfd one{socket_.get(), POLLIN, 0};
      if (poll(&one, 1, kLong) <= 0) return "(nothing)";
      char bytes[4096];
      const ssize_t length = recv(socket_.get(), bytes, sizeof bytes, 0);
      if (length <= 0) return "(end)";
      heard_.append(bytes, static_cast<std::size_t>(length));
    }
    const std::size_t end = heard_.find('\n');
    std::string line = heard_.substr(0, end);
    heard_.erase(0, end + 1);
    return line;
  }

 private:
  Descriptor socket_;
  int failure_ = 0;
  std::string heard_;
};

/// A process that does something, then waits to be killed.
class OtherProcess {
 public:
  explicit OtherProcess(const std::function<void()>& work) {
    int ready[2];
    if (pipe(ready) != 0) std::abort();
    pid_ = fork();
    if (pid_ == 0) {
      prctl(PR_SET_PDEATHSIG, SIGKILL);
      work();
      if (write(ready[1], "", 1) != 1) std::abort();
      while (true) pause();
    }
    close(ready[1]);
    char byte = 0;
    if (read(ready[0], &byte, 1) != 1) std::abort();
    close(ready[0]);
  }
  ~OtherProcess() { die(); }
  OtherProcess(const OtherProcess&) = delete;
  OtherProcess& operator=(const OtherProcess&) = delete;

  [[nodiscard]] pid_t pid() const { return pid_; }
  void die() {
    if (pid_ < 0) return;
    kill(pid_, SIGKILL);
    waitpid(pid_, nullptr, 0);
    pid_ = -1;
  }

 private:
  pid_t pid_ = -1;
};

/// Whose process it is.
struct User {
  uid_t user;
  gid_t group;
  gid_t otherGroup;
};

/// What a process of another user returns. @return -1: there is no such user here
inline int as(const User& user, const std::function<int()>& work) {
  constexpr int kNoSuchUser = 77;
  const pid_t child = fork();
  if (child == 0) {
    const bool became = setgroups(1, &user.otherGroup) == 0 && setgid(user.group) == 0 && setuid(user.user) == 0;
    _exit(became ? work() : kNoSuchUser);
  }
  int status = 0;
  waitpid(child, &status, 0);
  if (!WIFEXITED(status)) return -2;
  return WEXITSTATUS(status) == kNoSuchUser ? -1 : WEXITSTATUS(status);
}

}  // namespace tembra::test

#endif
