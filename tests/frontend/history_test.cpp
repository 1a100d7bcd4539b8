// The flight recorder: what it keeps, in how much memory, and what it costs.
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <atomic>
#include <nlohmann/json.hpp>
#include <thread>
#include <vector>

#include "history.h"
#include "kit/json_schema.h"
#include "kit/memory.h"

namespace tembra::test {
namespace {

using frontend::History;
using Json = nlohmann::json;

std::string textOf(const History& history, std::size_t size = TEMBRA_HISTORY_SIZE) {
  std::string text(size, '?');
  text.resize(history.write(text.data(), text.size()));
  EXPECT_EQ(text.c_str(), text);
  return text;
}

/// All of them good, and one behind the other.
std::vector<Json> entriesIn(const std::string& text) {
  static const kit::JsonSchema schema(TEMBRA_SCHEMAS "/tembra-history.schema.json");
  std::vector<Json> entries;
  for (std::size_t from = 0; from < text.size();) {
    const std::size_t end = text.find('\n', from);
    entries.push_back(Json::parse(text.substr(from, end - from)));
    const Json& entry = entries.back();
    EXPECT_EQ(schema.faultOf(entry), "") << entry;
    if (entries.size() > 1) {
      const Json& before = entries[entries.size() - 2];
      EXPECT_EQ(entry["entry"], before["entry"].get<int>() + 1);
      EXPECT_GE(entry["monotonic_us"], before["monotonic_us"]);
    }
    from = end + 1;
  }
  return entries;
}

std::vector<Json> entriesOf(const History& history) { return entriesIn(textOf(history)); }

long long now(clockid_t clock) {
  timespec time{};
  clock_gettime(clock, &time);
  return time.tv_sec * 1000000LL + time.tv_nsec / 1000;
}

class HistoryTest : public ::testing::Test {
 protected:
  const std::unique_ptr<History> owner_ = std::make_unique<History>();
  History& history_ = *owner_;
};

TEST_F(HistoryTest, NothingHasHappenedAtFirst) {
  EXPECT_EQ(textOf(history_), "");
  EXPECT_EQ(history_.write(nullptr, 0), 0U);
  unsigned long long last = 0;
  EXPECT_EQ(history_.behind(last), "");
}

TEST_F(HistoryTest, EachEntryHasItsTimesAndWhatHappened) {
  const long long monotonic = now(CLOCK_MONOTONIC);
  const long long wall = now(CLOCK_REALTIME);
  history_.call("hue-add-bulb", {"02:a1:b2:0c:00:01", "", "a \"lamp\""}, 0);
  history_.event(R"({"event":"ended"})");
  history_.call("finish", {}, EMSGSIZE);
  history_.line(1, "libTembraAssoc:a\\b\x01\xE9 \xC3\xA9 \xF0\x9F\x98\x80 \n");
  history_.line(77, "");
  const std::vector<Json> entries = entriesOf(history_);
  ASSERT_EQ(entries.size(), 5U);
  for (const Json& entry : entries) {
    EXPECT_LE(entry["monotonic_us"].get<long long>() - monotonic, 60000000);
    EXPECT_GE(entry["monotonic_us"], monotonic);
    EXPECT_LE(entry["wall_us"].get<long long>() - wall, 60000000);
    EXPECT_GE(entry["wall_us"], wall);
  }
  const auto rest = [&entries](std::size_t i) {
    Json left = entries[i];
    for (const char* each : {"schema", "entry", "monotonic_us", "wall_us"}) left.erase(each);
    return left;
  };
  EXPECT_EQ(rest(0), Json::parse(R"({"call":"hue-add-bulb","arguments":["02:a1:b2:0c:00:01","a \"lamp\""]})"));
  EXPECT_EQ(rest(1), Json::parse(R"({"event":{"event":"ended"}})"));
  EXPECT_EQ(rest(2), Json::parse(R"({"call":"finish","error":90})"));
  EXPECT_EQ(rest(3), Json::parse(R"({"log":"libTembraAssoc:a\\b\u0001\ufffd \u00e9 \ud83d\ude00","level":"warning"})"));
  EXPECT_EQ(rest(4), Json::parse(R"({"log":"","level":"error"})"));
}

TEST_F(HistoryTest, TheOldestEntriesGoFirst) {
  constexpr int kEntries = 5000;
  for (int i = 1; i <= kEntries; ++i) {
    history_.line(0, std::string(static_cast<std::size_t>(i * 37 % 512), static_cast<char>('a' + i % 26)));
    const std::string text = textOf(history_);
    ASSERT_LT(text.size(), TEMBRA_HISTORY_SIZE);
    if (i % 97 != 0) continue;
    const std::vector<Json> entries = entriesIn(text);
    ASSERT_EQ(entries.back()["entry"], i);
    ASSERT_TRUE(entries.front()["entry"] == 1 || text.size() > TEMBRA_HISTORY_SIZE - 1000);
  }
  EXPECT_LE(sizeof(History), 65536U);
}

TEST_F(HistoryTest, WhatIsTooLongIsLeftOut) {
  history_.event('"' + std::string(40000, 'x') + '"');
  history_.line(2, std::string(3000, '\x02'));
  const std::vector<Json> entries = entriesOf(history_);
  EXPECT_TRUE(entries.at(0)["event"].is_null());
  EXPECT_EQ(entries.at(1)["log"].get<std::string>(), "");  // what ends a line is no part of it
  history_.line(2, 'a' + std::string(3000, '\xFF'));
  EXPECT_EQ(entriesOf(history_).at(2)["log"].get<std::string>().size(), 1 + 1023 * 3);
}

TEST_F(HistoryTest, ATextWithLessRoomHasTheNewestLines) {
  for (int i = 0; i < 3; ++i) history_.call("add", {}, 0);
  const std::string all = textOf(history_);
  const std::size_t line = all.size() / 3;
  EXPECT_EQ(textOf(history_, all.size() + 1), all);
  EXPECT_EQ(textOf(history_, all.size()), all.substr(line));
  EXPECT_EQ(textOf(history_, line + 1), all.substr(2 * line));
  EXPECT_EQ(textOf(history_, line), "");
  EXPECT_EQ(textOf(history_, 1), "");
}

TEST_F(HistoryTest, WhoeverFollowsHearsEachEntryOnce) {
  unsigned long long last = 0;
  std::string heard;
  for (int i = 0; i < 3000; ++i) {
    history_.line(0, "a line of the log, number " + std::to_string(i));
    if (i % 7 == 0) heard += history_.behind(last);
  }
  heard += history_.behind(last);
  EXPECT_EQ(entriesIn(heard).size(), 3000U);
  EXPECT_EQ(last, 3000U);
  EXPECT_EQ(history_.behind(last), "");
  last = 0;
  EXPECT_EQ(history_.behind(last), textOf(history_));
}

// A watcher hears each entry as it comes.
TEST_F(HistoryTest, AFewLinesTakeNoMemoryForAll) {
  for (int i = 0; i < 3000; ++i) history_.call("add", {}, 0);
  unsigned long long last = 2998;
  const std::string lines = history_.behind(last);
  EXPECT_EQ(entriesIn(lines).size(), 2U);
  EXPECT_EQ(last, 3000U);
  EXPECT_LT(lines.capacity(), 2048U);
}

TEST_F(HistoryTest, RecordingAllocatesNothing) {
  const std::string event = R"({"event":"found","name":")" + std::string(5000, 'x') + "\"}";
  const std::string line(511, '\xE9');
  const kit::AllocationCount allocations;
  for (int i = 0; i < 100; ++i) {
    history_.event(event);
    history_.call("hue-add-bulb", {"02:a1:b2:0c:00:01", line}, EBUSY);
    history_.line(3, line);
  }
  EXPECT_EQ(allocations.value(), 0U);
}

TEST_F(HistoryTest, TheAlarmCountsEntries) {
  const int alarm = eventfd(0, EFD_NONBLOCK);
  history_.call("add", {}, 0);
  history_.setAlarm(alarm);
  history_.call("add", {}, 0);
  history_.event("{}");
  eventfd_t count = 0;
  EXPECT_EQ(eventfd_read(alarm, &count), 0);
  EXPECT_EQ(count, 2U);
  history_.clearAlarm(alarm + 1);
  history_.line(0, "");
  EXPECT_EQ(eventfd_read(alarm, &count), 0);
  history_.clearAlarm(alarm);
  history_.line(0, "");
  EXPECT_EQ(eventfd_read(alarm, &count), -1);
  close(alarm);
}

TEST_F(HistoryTest, EveryThreadRecordsWhileOthersRead) {
  constexpr int kWriters = 3;
  constexpr int kLines = 3000;
  std::atomic<int> writing = kWriters;
  std::vector<std::thread> threads;
  threads.reserve(kWriters);
  for (int i = 0; i < kWriters; ++i) {
    threads.emplace_back([this, &writing, i] {
      for (int j = 0; j < kLines; ++j) {
        j % 3 == 0   ? history_.call("add", {std::to_string(j)}, i)
        : j % 3 == 1 ? history_.event(R"({"event":"step"})")
                     : history_.line(i, "a line of the log");
      }
      --writing;
    });
  }
  std::string heard;
  unsigned long long last = 0;
  std::thread follower([&] {
    while (writing > 0) heard += history_.behind(last);
  });
  while (writing > 0) entriesOf(history_);
  for (std::thread& each : threads) each.join();
  follower.join();
  heard += history_.behind(last);
  EXPECT_EQ(entriesOf(history_).back()["entry"], kWriters * kLines);
  EXPECT_EQ(last, static_cast<unsigned long long>(kWriters * kLines));
  EXPECT_FALSE(heard.empty());
}

}  // namespace
}  // namespace tembra::test
