// The other process: it asks who has the connection, watches and cancels through <tembra/watch.h>.
#include <gtest/gtest.h>
#include <tembra/watch.h>

#include "history.h"
#include "watch_kit.h"
#include "watch_pointer.h"

namespace tembra::test {
namespace {

using frontend::WatchServer;

/// The next line, or the name of the error.
std::string next(const Watch& watch, int milliseconds = kLong) {
  const char* const line = tembra_watch_next(watch.get(), milliseconds);
  return line != nullptr ? line : strerrorname_np(errno);
}

int openError(const std::string& path) {
  errno = 0;
  const Watch watch(tembra_watch_open(path.c_str()));
  return watch ? 0 : errno;
}

tembra_holder sized() {
  tembra_holder holder{};
  holder.size = sizeof holder;
  return holder;
}

/// Something else that listens where a holder would, and says a text to the first who comes.
class Impostor {
 public:
  Impostor(const std::string& path, std::string text)
      : listener_(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0)), text_(std::move(text)) {
    const sockaddr_un address = addressOf(path);
    if (bind(listener_.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) std::abort();
    if (listen(listener_.get(), 1) != 0) std::abort();
    thread_ = std::thread([this] {
      const Descriptor peer(accept(listener_.get(), nullptr, nullptr));
      send(peer.get(), text_.data(), text_.size(), MSG_NOSIGNAL);
    });
  }
  ~Impostor() { thread_.join(); }
  Impostor(const Impostor&) = delete;
  Impostor& operator=(const Impostor&) = delete;

 private:
  Descriptor listener_;
  std::string text_;
  std::thread thread_;
};

class WatchClient : public ::testing::Test {
 protected:
  WatchClient() { std::filesystem::create_directory(place_.folder()); }

  std::string lineOf(long long pid, const std::string& program = "kiosk") {
    return frontend::holderLine({3, program, pid, 1790000000}, R"({"operation":"remove","phase":"leaving"})");
  }

  Place place_;
  Host host_;
};

TEST_F(WatchClient, SaysWhoHasTheConnection) {
  const OtherProcess holder([this] {
    auto* const host = new Host;
    new WatchServer(place_.socket(), {3, "cloud \"agent\"", 0, 0}, *host);
  });
  tembra_holder who = sized();
  ASSERT_EQ(tembra_read_holder(place_.socket().c_str(), kLong, &who), 0);
  EXPECT_EQ(who.role, 3);
  EXPECT_EQ(who.pid, holder.pid());
  EXPECT_NEAR(static_cast<double>(who.since), static_cast<double>(std::time(nullptr)), 60);
  EXPECT_STREQ(who.program, "cloud \"agent\"");
  EXPECT_STREQ(who.operation, "add");
  EXPECT_STREQ(who.phase, "button");
}

TEST_F(WatchClient, WatchesAndCancels) {
  WatchServer server(place_.socket(), {}, host_);
  const Watch watch(tembra_watch_open(place_.socket().c_str()));
  ASSERT_TRUE(watch);
  EXPECT_NE(next(watch).find("\"holder\""), std::string::npos);
  EXPECT_EQ(next(watch, 0), "ETIMEDOUT");
  EXPECT_EQ(next(watch, 20), "ETIMEDOUT");
  server.publish(1, R"({"number":1})");
  server.publish(1, R"({"number":2})");
  pollfd one{tembra_watch_descriptor(watch.get()), POLLIN, 0};
  EXPECT_EQ(poll(&one, 1, kLong), 1);
  EXPECT_EQ(next(watch), R"({"number":1})");
  EXPECT_EQ(next(watch, -1), R"({"number":2})");
  EXPECT_EQ(tembra_watch_cancel(watch.get()), 0);
  EXPECT_TRUE(comesTrue([this] { return host_.cancels == 1; }));
}

TEST_F(WatchClient, AsksForTheFlightRecorder) {
  WatchServer server(place_.socket(), {}, host_);
  const Watch watch(tembra_watch_open(place_.socket().c_str()));
  EXPECT_NE(next(watch).find("\"holder\""), std::string::npos);
  EXPECT_EQ(tembra_watch_history(watch.get()), 0);
  std::string line = next(watch);
  while (line.find("\"entry\"") != std::string::npos) line = next(watch);
  EXPECT_EQ(line.find(R"({"schema":1,"history":)"), 0U) << line;
  frontend::history().event("{}");
  EXPECT_NE(next(watch).find(R"("event":{}})"), std::string::npos);
}

TEST_F(WatchClient, HearsTheEndOfTheHolder) {
  OtherProcess holder([this] {
    auto* const host = new Host;
    (new WatchServer(place_.socket(), {}, *host))->publish(1, "{}");
  });
  const Watch watch(tembra_watch_open(place_.socket().c_str()));
  ASSERT_TRUE(watch);
  EXPECT_NE(next(watch).find("\"holder\""), std::string::npos);
  holder.die();
  EXPECT_EQ(next(watch), "ECONNRESET");
  EXPECT_EQ(next(watch), "ECONNRESET");
  EXPECT_EQ(tembra_watch_cancel(watch.get()), ECONNRESET);
  EXPECT_EQ(tembra_watch_history(watch.get()), ECONNRESET);
}

TEST_F(WatchClient, NobodyIsThere) {
  EXPECT_EQ(openError(place_.socket()), ENOENT);
  EXPECT_EQ(openError(place_.top() + "/none/front-end"), ENOENT);
  OtherProcess holder([this] {
    auto* const host = new Host;
    new WatchServer(place_.socket(), {}, *host);
  });
  holder.die();
  ASSERT_TRUE(std::filesystem::exists(place_.socket()));
  EXPECT_EQ(openError(place_.socket()), ENOENT);
  tembra_holder who = sized();
  EXPECT_EQ(tembra_read_holder(place_.socket().c_str(), kLong, &who), ENOENT);
}

TEST_F(WatchClient, RefusesWhatCannotBeAWatchSocket) {
  EXPECT_EQ(openError("front-end"), EINVAL);
  EXPECT_EQ(openError(""), EINVAL);
  EXPECT_EQ(openError("/" + std::string(107, 'x')), EINVAL);
  EXPECT_EQ(tembra_watch_open(nullptr), nullptr);
  EXPECT_EQ(errno, EINVAL);
  const WatchServer server(place_.socket(), {}, host_);
  chmod(place_.folder().c_str(), 0777);  // anybody could be serving there
  EXPECT_EQ(openError(place_.socket()), EACCES);
}

TEST_F(WatchClient, AHolderHasToBeTheProcessThatItSays) {
  const std::string start = lineOf(getpid());
  const struct {
    const char* what;
    std::string said;
    const char* heard;
  } rows[] = {
      {"an honest line", start + "\n", ""},
      {"another process", lineOf(getpid() + 1) + "\n", "EPROTO"},
      {"no process", "{}\n", "EPROTO"},
      {"no JSON", "HTTP/1.1 200 OK\n", "EPROTO"},
      {"a NUL", start + std::string("\0\n", 2), "EPROTO"},
      {"half a line", start, "ECONNRESET"},
      {"nothing", "", "ECONNRESET"},
      {"an endless line", start + std::string(70000, ' ') + "\n", "EPROTO"},
      {"a refusal", frontend::errorLine("not permitted") + "\n", "EACCES"},
  };
  for (const auto& row : rows) {
    const Impostor impostor(place_.socket(), row.said);
    const Watch watch(tembra_watch_open(place_.socket().c_str()));
    ASSERT_TRUE(watch);
    EXPECT_EQ(next(watch), *row.heard != '\0' ? row.heard : start) << row.what;
    std::filesystem::remove(place_.socket());
  }
}

TEST_F(WatchClient, ALineThatIsNoTextIsRefused) {
  const std::string start = lineOf(getpid());
  const Impostor impostor(place_.socket(), start + "\n{}\n{\"a\":" + std::string("\0", 1) + "1}\n");
  const Watch watch(tembra_watch_open(place_.socket().c_str()));
  EXPECT_EQ(next(watch), start);
  EXPECT_EQ(next(watch), "{}");
  EXPECT_EQ(next(watch), "EPROTO");
}

TEST_F(WatchClient, ASilentHolderIsWaitedForAsLongAsSaid) {
  const OtherProcess silent([this] {
    static const Descriptor listener(::socket(AF_UNIX, SOCK_STREAM, 0));
    const sockaddr_un address = addressOf(place_.socket());
    if (bind(listener.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) std::abort();
    if (listen(listener.get(), 0) != 0) std::abort();
  });
  tembra_holder who = sized();
  EXPECT_EQ(tembra_read_holder(place_.socket().c_str(), 30, &who), ETIMEDOUT);
  EXPECT_EQ(tembra_read_holder(place_.socket().c_str(), 0, &who), EAGAIN);  // there is no room for a second
  EXPECT_EQ(who.pid, 0);
}

TEST_F(WatchClient, AStructureHasItsSize) {
  const WatchServer server(place_.socket(), {}, host_);
  tembra_holder who{};
  EXPECT_EQ(tembra_read_holder(place_.socket().c_str(), kLong, &who), EINVAL);
  EXPECT_EQ(tembra_read_holder(place_.socket().c_str(), kLong, nullptr), EINVAL);
  who.size = sizeof who + 8;  // of a later version
  EXPECT_EQ(tembra_read_holder(place_.socket().c_str(), kLong, &who), 0);
  EXPECT_EQ(who.pid, getpid());
}

TEST_F(WatchClient, LongNamesAreCutBetweenCharacters) {
  std::string program(62, 'x');
  const std::string escaped = lineOf(getpid(), program + "PLACE");
  const std::size_t at = escaped.find("PLACE");
  const Impostor impostor(place_.socket(), escaped.substr(0, at) + "\\u00e9" + escaped.substr(at + 5) + "\n");
  tembra_holder who = sized();
  ASSERT_EQ(tembra_read_holder(place_.socket().c_str(), kLong, &who), 0);
  EXPECT_EQ(who.program, program);  // a character of two bytes has no room
}

}  // namespace
}  // namespace tembra::test
