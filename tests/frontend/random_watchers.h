// Watchers who come and go, read or do not read, and ask to cancel, at random.
#ifndef TEMBRA_TESTS_FRONTEND_RANDOM_WATCHERS_H
#define TEMBRA_TESTS_FRONTEND_RANDOM_WATCHERS_H

#include <gtest/gtest.h>

#include <cerrno>
#include <nlohmann/json.hpp>
#include <numeric>
#include <random>
#include <string>
#include <vector>

#include "kit/json_schema.h"
#include "watch_pointer.h"

namespace tembra::test {

/// A watcher who checks that no event is left out and none is told twice.
class RandomWatcher {
 public:
  explicit RandomWatcher(const char* path) : watch_(tembra_watch_open(path)) {}

  /// @return false: its stream is over
  [[nodiscard]] bool read() {
    while (watch_) {
      const char* const line = tembra_watch_next(watch_.get(), 0);
      if (line == nullptr) return errno == ETIMEDOUT;
      hear(nlohmann::json::parse(line));
    }
    return false;
  }
  [[nodiscard]] bool cancel() const { return watch_ && tembra_watch_cancel(watch_.get()) == 0; }

  void askForHistory() {
    if (watch_ && !asked_) asked_ = tembra_watch_history(watch_.get()) == 0;
  }

  [[nodiscard]] int heard() const { return heard_; }

 private:
  void hear(const nlohmann::json& line) {
    if (line.contains("entry")) return hearEntry(line);
    static const kit::JsonSchema events(TEMBRA_SCHEMAS "/tembra-event.schema.json");
    static const kit::JsonSchema first(TEMBRA_SCHEMAS "/tembra-watch.schema.json");
    const bool isEvent = line.contains("event");
    if (!isEvent && line.contains("error")) return;  // one watcher too many
    EXPECT_EQ((isEvent ? events : first).faultOf(line), "") << line;
    if (line.contains("history")) return;
    const unsigned number = isEvent ? line.at("number") : line.at("state").at("last_event");
    EXPECT_TRUE(!isEvent || number == last_ + 1) << last_ << " before " << line;
    last_ = number;
    if (isEvent) ++heard_;
  }

  void hearEntry(const nlohmann::json& line) {
    static const kit::JsonSchema schema(TEMBRA_SCHEMAS "/tembra-history.schema.json");
    EXPECT_EQ(schema.faultOf(line), "") << line;
    const int number = line.at("entry");
    EXPECT_TRUE(entry_ == 0 || number == entry_ + 1) << entry_ << " before " << line;
    entry_ = number;
    if (line.contains("event")) ++heard_;
  }

  Watch watch_;
  bool asked_ = false;
  int entry_ = 0;  ///< of the flight recorder, once it was asked for
  unsigned last_ = 0;
  int heard_ = 0;
};

class RandomWatchers {
 public:
  RandomWatchers(const char* path, std::mt19937& random) : path_(path), random_(random) {}

  /// One of them does something.
  void act() {
    constexpr std::size_t kMost = 18;  // two too many
    const unsigned what = random_() % 16;
    if (what == 0) return end(any());
    if (all_.empty() || (what < 3 && all_.size() < kMost)) {
      all_.emplace_back(path_);
      return;
    }
    RandomWatcher& one = all_[any()];
    if (what == 3) static_cast<void>(one.cancel());
    if (what == 4) one.askForHistory();
    if (what < 14 && !one.read()) end(static_cast<std::size_t>(&one - all_.data()));
  }

  /// By those who have left and by those who still watch.
  [[nodiscard]] int heard() const {
    return std::accumulate(all_.begin(), all_.end(), heard_,
                           [](int sum, const RandomWatcher& one) { return sum + one.heard(); });
  }

 private:
  [[nodiscard]] std::size_t any() { return all_.empty() ? 0 : random_() % all_.size(); }

  void end(std::size_t which) {
    if (which >= all_.size()) return;
    heard_ += all_[which].heard();
    all_.erase(all_.begin() + static_cast<std::ptrdiff_t>(which));
  }

  const char* path_;
  std::mt19937& random_;
  std::vector<RandomWatcher> all_;
  int heard_ = 0;  ///< by those who have left
};

}  // namespace tembra::test

#endif
