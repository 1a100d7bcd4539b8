// Watchers of the process that has the connection: what they hear, what they may say, and what they cost.
#include <gtest/gtest.h>
#include <sys/resource.h>

#include <list>
#include <vector>

#include "history.h"
#include "watch_kit.h"

namespace tembra::test {
namespace {

using frontend::kMostBehind;
using frontend::kMostWatchers;
using frontend::WatchServer;

const char kUnknown[] = R"({"schema":1,"error":"unknown line"})";

class WatchTest : public ::testing::Test {
 protected:
  void SetUp() override { ASSERT_EQ(server_.error(), ""); }

  /// A watcher that has heard the state, and how many there are now.
  PlainWatcher& join() {
    PlainWatcher& watcher = watchers_.emplace_back(place_.socket());
    EXPECT_EQ(watcher.hear().find(R"({"schema":1,"holder":{)"), 0U);
    return watcher;
  }

  /// The entries of the flight recorder that a watcher hears at once.
  static std::vector<std::string> historyTo(PlainWatcher& watcher) {
    watcher.say("history\n");
    std::vector<std::string> lines;
    while (lines.empty() || lines.back().find("\"entry\"") != std::string::npos) lines.push_back(watcher.hear());
    EXPECT_EQ(lines.back().find(R"({"schema":1,"history":)"), 0U) << lines.back();
    lines.pop_back();
    return lines;
  }

  /// All that was said to the server has been dealt with.
  void settle() {
    PlainWatcher last(place_.socket());
    EXPECT_NE(last.hear(), "(nothing)");
  }

  Place place_;
  Host host_;
  WatchServer server_{place_.socket(), {2, "kiosk", 0, 0}, host_};
  std::list<PlainWatcher> watchers_;
};

TEST_F(WatchTest, TheStateComesFirstThenEachEvent) {
  const long long now = std::time(nullptr);
  PlainWatcher watcher(place_.socket());
  const std::string line = watcher.hear();
  frontend::HolderReport report;
  ASSERT_TRUE(frontend::readHolderLine(line, report)) << line;
  EXPECT_NEAR(static_cast<double>(report.holder.since), static_cast<double>(now), 60);
  EXPECT_EQ(line, R"({"schema":1,"holder":{"role":2,"program":"kiosk","pid":)" + std::to_string(getpid()) +
                      R"(,"since":)" + std::to_string(report.holder.since) +
                      R"(},"state":{"operation":"add","phase":"button","last_event":0}})");
  server_.publish(1, R"({"event":"found"})");
  server_.publish(1, R"({"event":"ended"})");
  EXPECT_EQ(watcher.hear(), R"({"event":"found"})");
  EXPECT_EQ(watcher.hear(), R"({"event":"ended"})");
}

TEST_F(WatchTest, TheFlightRecorderIsToldAndThenEachEntry) {
  PlainWatcher& watcher = join();
  PlainWatcher& other = join();
  frontend::history().call("add", {}, 0);
  EXPECT_NE(historyTo(watcher).back().find(R"("call":"add"})"), std::string::npos);
  frontend::history().event(R"({"event":"ended"})");
  server_.publish(1, R"({"event":"ended"})");
  frontend::history().line(0, "closed");
  EXPECT_NE(watcher.hear().find(R"("event":{"event":"ended"}})"), std::string::npos);
  EXPECT_NE(watcher.hear().find(R"("log":"closed")"), std::string::npos);
  EXPECT_EQ(other.hear(), R"({"event":"ended"})");
  EXPECT_NE(historyTo(watcher).back().find(R"("log":"closed")"), std::string::npos);
}

TEST_F(WatchTest, AWatcherHearsAllOfAFullFlightRecorder) {
  for (int i = 0; i < 5000; ++i) frontend::history().line(0, "one of many lines");
  std::size_t bytes = 0;
  for (const std::string& line : historyTo(join())) bytes += line.size() + 1;
  EXPECT_GT(bytes, 65000U);
}

TEST_F(WatchTest, SixteenWatchAndTheNextHearsOnlyTheState) {
  for (std::size_t i = 0; i < kMostWatchers; ++i) join();
  PlainWatcher& next = join();
  EXPECT_EQ(next.hear(), R"({"schema":1,"error":"too many watchers"})");
  EXPECT_EQ(next.hear(), "(end)");
  watchers_.pop_back();
  server_.publish(1, "{}");
  for (PlainWatcher& each : watchers_) EXPECT_EQ(each.hear(), "{}");

  watchers_.pop_front();
  PlainWatcher& late = join();
  server_.publish(1, "{}");
  EXPECT_EQ(late.hear(), "{}");
}

TEST_F(WatchTest, AWatcherThatDoesNotReadIsDroppedAndTheOthersHearAll) {
  PlainWatcher& idle = join();
  PlainWatcher& reader = join();
  const std::string event = R"({"text":")" + std::string(1000, 'x') + R"("})";
  constexpr std::size_t kEvents = 10 * kMostBehind / 1000;
  for (std::size_t i = 0; i < kEvents; ++i) {
    server_.publish(1, event);
    ASSERT_EQ(reader.hear(), event);
  }
  std::size_t heard = 0;
  std::string line;
  while ((line = idle.hear()) == event) ++heard;
  EXPECT_EQ(line, "(end)");
  EXPECT_GT(heard, 0U);
  EXPECT_LE(heard, 2 * kMostBehind / event.size());  // the kernel counts a socket's bytes in its own way
}

TEST_F(WatchTest, EventsWithoutRoomEndTheWatchersRatherThanBeMissed) {
  PlainWatcher& first = join();
  const std::string event(1000, 'x');
  std::unique_lock turn(host_.turn());
  const PlainWatcher second(place_.socket());
  ASSERT_TRUE(comesTrue([this] { return host_.asked() == 2; }));  // and now the server's thread waits for its turn
  for (std::size_t i = 0; i < 2 * kMostBehind / event.size(); ++i) server_.publish(1, event);
  turn.unlock();
  std::string line;
  while ((line = first.hear()) == event) {
  }
  EXPECT_EQ(line, "(end)");
  server_.publish(1, "{}");
  join();  // others may come
}

TEST_F(WatchTest, AWatcherCancels) {
  const PlainWatcher& watcher = join();
  watcher.say("cancel\n");
  EXPECT_TRUE(comesTrue([this] { return host_.cancels == 1; }));
  watcher.say("can");
  watcher.say("cel\ncancel\n");
  EXPECT_TRUE(comesTrue([this] { return host_.cancels == 3; }));
}

TEST_F(WatchTest, LinesAreReadUpTo256Bytes) {
  const struct {
    std::string said;
    std::vector<std::string> heard;
  } rows[] = {
      {"\n", {kUnknown}},
      {"Cancel\n", {kUnknown}},
      {"cancel\r\n", {kUnknown}},
      {std::string("cancel\0\n", 8), {kUnknown}},
      {"help\nstate\n", {kUnknown, kUnknown}},
      {std::string(255, 'x') + "\n", {kUnknown}},
      {std::string(256, 'x') + "\n", {"(end)"}},
      {std::string(256, 'x'), {"(end)"}},
      {std::string(100000, '\n'), {kUnknown}},
      {"cancel " + std::string(100000, 'x') + "\ncancel\n", {"(end)"}},
  };
  for (const auto& row : rows) {
    PlainWatcher watcher(place_.socket());
    EXPECT_NE(watcher.hear(), "(end)");
    watcher.say(row.said);
    for (const std::string& line : row.heard) EXPECT_EQ(watcher.hear(), line) << row.said.substr(0, 20);
  }
  settle();
  EXPECT_EQ(host_.cancels, 0);
}

TEST_F(WatchTest, ALineWithoutItsEndIsNoLine) {
  PlainWatcher& watcher = join();
  watcher.say("cancel");
  watcher.sayNoMore();
  settle();
  EXPECT_EQ(host_.cancels, 0);
  server_.publish(1, "{}");
  EXPECT_EQ(watcher.hear(), "{}");  // who says no more may still listen
}

TEST_F(WatchTest, WatchersThatAreGoneLeaveNoDescriptor) {
  const auto count = [] {
    const std::filesystem::directory_iterator all("/proc/self/fd");
    return std::distance(begin(all), end(all));
  };
  settle();
  const auto before = count();
  for (int i = 0; i < 200; ++i) {
    const PlainWatcher watcher(place_.socket());
    watcher.say(i % 2 == 0 ? "what?\n" : "");
  }
  EXPECT_TRUE(comesTrue([&] { return count() <= before; })) << count() << " descriptors, before " << before;
}

TEST_F(WatchTest, WithoutDescriptorsNobodyComesAndLaterEverybody) {
  rlimit limit{};
  getrlimit(RLIMIT_NOFILE, &limit);
  PlainWatcher& first = join();
  const int ours = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
  const rlimit none{static_cast<rlim_t>(ours) + 1, limit.rlim_max};
  setrlimit(RLIMIT_NOFILE, &none);
  const sockaddr_un address = addressOf(place_.socket());
  ASSERT_EQ(connect(ours, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
  server_.publish(1, "{}");
  EXPECT_EQ(first.hear(), "{}");
  setrlimit(RLIMIT_NOFILE, &limit);
  pollfd one{ours, POLLIN, 0};
  EXPECT_EQ(poll(&one, 1, kLong), 1);
  close(ours);
}

TEST_F(WatchTest, SignalsOfTheProgramDisturbNobody) {
  sigset_t one;
  sigemptyset(&one);
  sigaddset(&one, SIGUSR1);
  pthread_sigmask(SIG_BLOCK, &one, nullptr);
  join();
  kill(getpid(), SIGUSR1);
  settle();
  sigset_t pending;
  sigpending(&pending);
  EXPECT_EQ(sigismember(&pending, SIGUSR1), 1);  // the server's thread has not taken it
  int number = 0;
  sigwait(&one, &number);
}

// Every watcher, whenever it comes, hears of every event once: by the state, or by its line.
TEST_F(WatchTest, NoEventIsMissedOrToldTwice) {
  constexpr int kEvents = 2000;
  std::atomic<bool> ended = false;
  const auto watch = [&] {
    while (!ended) {
      PlainWatcher watcher(place_.socket());
      const std::string state = watcher.hear();
      const std::string::size_type number = state.rfind(':') + 1;
      int last = std::atoi(state.c_str() + number);
      for (int i = 0; i < 20 && last < kEvents; ++i) {
        const int event = std::atoi(watcher.hear().c_str());
        ASSERT_EQ(event, last + 1);
        last = event;
      }
    }
  };
  std::thread one(watch);
  std::thread two(watch);
  for (int i = 1; i <= kEvents; ++i) {
    host_.lastEvent = static_cast<unsigned>(i);
    server_.publish(static_cast<unsigned>(i), std::to_string(i));
    if (i % 8 == 0) std::this_thread::sleep_for(std::chrono::microseconds(200));
  }
  ended = true;
  one.join();
  two.join();
}

TEST_F(WatchTest, AnEventThatTheStateTellsIsToldToTheOthersOnly) {
  PlainWatcher& first = join();
  std::unique_lock turn(host_.turn());
  PlainWatcher second(place_.socket());
  ASSERT_TRUE(comesTrue([this] { return host_.asked() == 2; }));  // the server's thread waits for the state
  host_.lastEvent = 1;
  server_.publish(1, "{}");
  turn.unlock();
  EXPECT_NE(second.hear().find(R"("last_event":1)"), std::string::npos);
  server_.publish(2, "[]");
  EXPECT_EQ(second.hear(), "[]");
  EXPECT_EQ(first.hear(), "{}");
  EXPECT_EQ(first.hear(), "[]");
}

TEST(WatchEnd, WhatWasPublishedIsHeardThenTheEnd) {
  const Place place;
  Host host;
  auto server = std::make_unique<WatchServer>(place.socket(), frontend::Holder{}, host);
  PlainWatcher watcher(place.socket());
  EXPECT_NE(watcher.hear(), "(end)");
  server->publish(1, R"({"event":"ended"})");
  server.reset();
  EXPECT_EQ(watcher.hear(), R"({"event":"ended"})");
  EXPECT_EQ(watcher.hear(), "(end)");
  EXPECT_FALSE(std::filesystem::exists(place.socket()));
  EXPECT_EQ(PlainWatcher(place.socket()).failure(), ENOENT);
}

TEST(WatchEnd, WhoLeavesMakesRoomAndStillTellsTheEnd) {
  const Place place;
  Host host;
  auto first = std::make_unique<WatchServer>(place.socket(), frontend::Holder{2, "first", 0, 0}, host);
  PlainWatcher watcher(place.socket());
  EXPECT_NE(watcher.hear(), "(end)");
  first->leave();
  EXPECT_EQ(PlainWatcher(place.socket()).failure(), ENOENT);
  const WatchServer second(place.socket(), {3, "second", 0, 0}, host);
  EXPECT_EQ(second.error(), "");
  first->publish(1, R"({"event":"ended"})");
  first.reset();
  EXPECT_EQ(watcher.hear(), R"({"event":"ended"})");
  EXPECT_EQ(watcher.hear(), "(end)");
  EXPECT_NE(PlainWatcher(place.socket()).hear().find("\"second\""), std::string::npos);
}

TEST(WatchEnd, AChildOfTheHolderKeepsNoWatcherWaiting) {
  const Place place;
  Host host;
  auto server = std::make_unique<WatchServer>(place.socket(), frontend::Holder{}, host);
  PlainWatcher watcher(place.socket());
  EXPECT_NE(watcher.hear(), "(end)");
  const OtherProcess child([] {});
  server.reset();
  EXPECT_EQ(watcher.hear(), "(end)");
}

TEST(WatchEnd, AHolderThatDiesEndsItsWatchers) {
  const Place place;
  OtherProcess holder([&] {
    auto* const host = new Host;
    new WatchServer(place.socket(), {}, *host);
  });
  PlainWatcher watcher(place.socket());
  EXPECT_NE(watcher.hear(), "(end)");
  holder.die();
  EXPECT_EQ(watcher.hear(), "(end)");
}

}  // namespace
}  // namespace tembra::test
