// Random operations with random buttons, faults, watchers and cancels, in one process: each ends exactly once, soon
// after a cancel, and leaves nothing behind. TEMBRA_OPERATIONS says how many (default 60), TEMBRA_SEED with which seed.
// When an operation ends without a cancel, the campaign reckons to the millisecond (../../campaign).
#include <dirent.h>
#include <gtest/gtest.h>
#include <tembra/frontend.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <iostream>
#include <memory>
#include <optional>
#include <random>
#include <thread>

#include "kit/program.h"
#include "random_watchers.h"
#include "sim/control/control_client.h"
#include "sim/control/control_path.h"
#include "support/program.h"

// A reset, through which the library sleeps, takes 90 ms instead of 9 s.
extern "C" unsigned sleep(unsigned seconds) {
  std::this_thread::sleep_for(std::chrono::milliseconds(10 * seconds));
  return 0;
}

namespace tembra::test {
namespace {

using std::chrono::milliseconds;
using SteadyClock = std::chrono::steady_clock;

constexpr char kMac[] = "02:a1:b2:0c:00:01";
constexpr char kWatchPath[] = "/tmp/random/front-end";
constexpr int kOperationsOfAKit = 50;
constexpr int kOperationsOfARun = 60;        // fewer say nothing about how much is watched
constexpr milliseconds kPatience{250};       // then an operation is cancelled
constexpr milliseconds kLongestCancel{100};  // of an idle machine
constexpr milliseconds kNever{10'000};

using Start = int (*)(tembra_frontend* kit);
constexpr Start kStarts[] = {
    tembra_frontend_add,
    tembra_frontend_add,
    tembra_frontend_add,
    tembra_frontend_add_again,
    tembra_frontend_take_out,
    tembra_frontend_remove,
    tembra_frontend_remove,
    tembra_frontend_hue_discover,
    [](tembra_frontend* kit) { return tembra_frontend_hue_add_bridge(kit, kMac, 60); },
    [](tembra_frontend* kit) { return tembra_frontend_hue_add_bulb(kit, kMac, "Lamp"); },
    [](tembra_frontend* kit) { return tembra_frontend_hue_refresh(kit, kMac, "{}"); },
    [](tembra_frontend* kit) { return tembra_frontend_hue_remove(kit, kMac); },
    [](tembra_frontend* kit) { return tembra_frontend_reset(kit, TEMBRA_RESET_BOTH); },
    [](tembra_frontend* kit) { return tembra_frontend_reset(kit, TEMBRA_RESET_BOTH_AND_DEVICE_LIST); },
    tembra_frontend_hue_list,
    tembra_frontend_nest_status,
    [](tembra_frontend* kit) { return tembra_frontend_nest_link(kit, "code"); },
    tembra_frontend_nest_unlink,
    tembra_frontend_devices,
};

constexpr const char* kWhatHappens[] = {
    "press metering-plug", "press siren",          "press zb-contact", "press zb-tilt",       "press zb-ac-plug-mute",
    "press hue-button",    "press --fail",         "fault none",       "fault *:lost",        "fault *:twice",
    "fault info:silence",  "fault getting:code=9", "fault hue:code=4", "fault nest:code=99",  "fault *:foreign:3",
    "answer zigbee 11",    "answer hue 77",        "answer nest 41",   "fault complete:lost", "fault *:reordered",
};

struct Free {
  void operator()(tembra_event* event) const { tembra_event_free(event); }
  void operator()(tembra_frontend* kit) const { tembra_frontend_free(kit); }
};
using Event = std::unique_ptr<tembra_event, Free>;
using Kit = std::unique_ptr<tembra_frontend, Free>;

int setting(const char* name, int otherwise) {
  const char* text = std::getenv(name);
  return text == nullptr ? otherwise : std::atoi(text);
}

int entriesOf(const char* folder) {
  DIR* listing = opendir(folder);
  int count = 0;
  while (readdir(listing) != nullptr) ++count;
  closedir(listing);
  return count;
}

// The library's receive thread is detached: it may end a moment after the connection was closed.
void expectEntries(const char* folder, int count) {
  const auto until = SteadyClock::now() + kNever;
  while (entriesOf(folder) != count && SteadyClock::now() < until) std::this_thread::sleep_for(milliseconds(1));
  EXPECT_EQ(entriesOf(folder), count) << folder;
}

/// One operation as its caller sees it.
class RandomOperation {
 public:
  RandomOperation(tembra_frontend* kit, RandomWatchers& watchers, std::mt19937& random)
      : kit_(kit), watchers_(watchers), random_(random) {}

  /// How long the cancel took, when there was one.
  std::optional<milliseconds> toItsEnd() {
    startWhenFree(kStarts[random_() % std::size(kStarts)]);
    const auto begin = SteadyClock::now();
    const auto giveUp = begin + (random_() % 3 == 0 ? milliseconds(random_() % 40) : kPatience);
    happen();
    while (!ended_ && !testing::Test::HasFailure()) hear(giveUp);
    return cancelled_ ? std::optional(std::chrono::duration_cast<milliseconds>(SteadyClock::now() - *cancelled_))
                      : std::nullopt;
  }

 private:
  // A call of the library goes on behind the end of an operation that was cancelled.
  void startWhenFree(Start start) {
    const auto until = SteadyClock::now() + kNever;
    int error = start(kit_);
    while (error == EBUSY && SteadyClock::now() < until) {
      std::this_thread::sleep_for(milliseconds(1));
      error = start(kit_);
    }
    ASSERT_EQ(error, 0) << "the operation before has ended";
  }

  // What the router refuses, because nobody listens to the button, say, does not happen.
  void happen() const {
    const char* what = kWhatHappens[random_() % std::size(kWhatHappens)];
    EXPECT_NO_THROW(sim::ask(sim::defaultControlPath(), what)) << what;
  }

  void hear(SteadyClock::time_point giveUp) {
    const auto left = std::chrono::duration_cast<milliseconds>(giveUp - SteadyClock::now());
    const auto wait = cancelled_ ? kNever : std::max(left, milliseconds(0));
    const Event event(tembra_frontend_next(kit_, static_cast<int>(wait.count())));
    if (!event) {
      ASSERT_FALSE(cancelled_) << "no end after a cancel";
      cancelled_ = SteadyClock::now();
      tembra_frontend_cancel(kit_);
      return;
    }
    ended_ = tembra_event_ended(event.get()) != nullptr;
    if (tembra_event_found(event.get()) != nullptr) tembra_frontend_finish(kit_, 0, nullptr, nullptr);
    if (!ended_ && random_() % 4 == 0) happen();
    watchers_.act();
  }

  tembra_frontend* kit_;
  RandomWatchers& watchers_;
  std::mt19937& random_;
  std::optional<SteadyClock::time_point> cancelled_;
  bool ended_ = false;
};

/// The operations of kits with random options, one kit after the other.
class RandomKits {
 public:
  explicit RandomKits(unsigned seed) : random_(seed), watchers_(kWatchPath, random_) {}

  void perform(int operations) {
    for (int i = 0; i < operations && !testing::Test::HasFailure(); ++i) {
      if (i % kOperationsOfAKit == 0) makeKit();
      const auto cancel = RandomOperation(kit_.get(), watchers_, random_).toItsEnd();
      if (cancel && *cancel > kLongestCancel) ++slow_;
      if (cancel) longest_ = std::max(longest_, *cancel);
      const Event more(tembra_frontend_next(kit_.get(), 0));
      EXPECT_FALSE(more) << "an event behind the end: " << tembra_event_json(more.get());
    }
    EXPECT_LE(slow_, operations / 50) << "cancels that took longer than on an idle machine";
    if (operations >= kOperationsOfARun) {
      EXPECT_GT(watchers_.heard(), operations / 4);
    }
    std::cout << operations << " operations, " << slow_ << " slow cancels, the longest took " << longest_.count()
              << " ms; " << watchers_.heard() << " events watched\n";
  }

 private:
  void makeKit() {
    kit_.reset();  // first: a process has one at a time
    const int role = 1 + static_cast<int>(random_() % 6);
    const int keepOpen = static_cast<int>(random_() % 2);
    const tembra_options options = {sizeof options, role, keepOpen, nullptr, kWatchPath};
    kit_.reset(tembra_frontend_new(&options));
    ASSERT_TRUE(kit_);
  }

  std::mt19937 random_;
  Kit kit_;
  RandomWatchers watchers_;
  int slow_ = 0;
  milliseconds longest_{0};
};

TEST(RandomOperations, EndExactlyOnceAndLeaveNothing) {
  kit::Program router({TEMBRA_SIM_PROGRAM, "run", "--speed", "500", "--latency", "500"}, routerSettings(Clock::kReal));
  router.waitFor("tembra-sim: ready");
  std::thread([] {}).join();  // a sanitizer starts a thread of its own with the first one
  const int threads = entriesOf("/proc/self/task");
  const int files = entriesOf("/proc/self/fd");
  RandomKits(static_cast<unsigned>(setting("TEMBRA_SEED", 1))).perform(setting("TEMBRA_OPERATIONS", kOperationsOfARun));
  expectEntries("/proc/self/task", threads);
  expectEntries("/proc/self/fd", files);
  router.signal(SIGTERM);
  const Ended ended = router.end();
  EXPECT_LE(ended.status, 1) << "1: the simulator was told what it never should be\n" << ended.errors;
}

}  // namespace
}  // namespace tembra::test
