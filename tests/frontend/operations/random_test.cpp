// Random operations with random buttons, faults and cancels, in one process: each ends exactly once, soon after a
// cancel, and leaves nothing behind. TEMBRA_OPERATIONS says how many (default 60), TEMBRA_SEED with which seed.
#include <dirent.h>
#include <gtest/gtest.h>
#include <tembra/frontend.h>

#include <chrono>
#include <cstdlib>
#include <memory>
#include <optional>
#include <random>
#include <thread>

#include "kit/program.h"
#include "sim/control/control_client.h"
#include "sim/control/control_path.h"
#include "support/program.h"

namespace tembra::test {
namespace {

using std::chrono::milliseconds;
using SteadyClock = std::chrono::steady_clock;

constexpr char kMac[] = "02:a1:b2:0c:00:01";
constexpr milliseconds kPatience{250};       // then an operation is cancelled
constexpr milliseconds kLongestCancel{100};  // of an idle machine
constexpr milliseconds kNever{10'000};

using Start = int (*)(tembra_frontend* kit);
constexpr Start kStarts[] = {
    tembra_frontend_add,
    tembra_frontend_add,
    tembra_frontend_add,
    tembra_frontend_remove,
    tembra_frontend_remove,
    tembra_frontend_hue_discover,
    [](tembra_frontend* kit) { return tembra_frontend_hue_add_bridge(kit, kMac, 0); },
    [](tembra_frontend* kit) { return tembra_frontend_hue_add_bulb(kit, kMac, "Lamp"); },
    [](tembra_frontend* kit) { return tembra_frontend_hue_remove(kit, kMac); },
    tembra_frontend_hue_list,
    tembra_frontend_nest_status,
    [](tembra_frontend* kit) { return tembra_frontend_nest_link(kit, "code"); },
    tembra_frontend_nest_unlink,
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
  RandomOperation(tembra_frontend* kit, std::mt19937& random) : kit_(kit), random_(random) {}

  /// How long the cancel took, when there was one.
  std::optional<milliseconds> toItsEnd() {
    const Start start = kStarts[random_() % std::size(kStarts)];
    EXPECT_EQ(start(kit_), 0) << "the operation before has ended";
    const auto begin = SteadyClock::now();
    const auto giveUp = begin + (random_() % 3 == 0 ? milliseconds(random_() % 40) : kPatience);
    happen();
    while (!ended_) hear(giveUp);
    return cancelled_ ? std::optional(std::chrono::duration_cast<milliseconds>(SteadyClock::now() - *cancelled_))
                      : std::nullopt;
  }

 private:
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
  }

  tembra_frontend* kit_;
  std::mt19937& random_;
  std::optional<SteadyClock::time_point> cancelled_;
  bool ended_ = false;
};

TEST(RandomOperations, EndExactlyOnceAndLeaveNothing) {
  kit::Program router({TEMBRA_SIM_PROGRAM, "run", "--speed", "500", "--latency", "500"}, routerSettings(Clock::kReal));
  router.waitFor("tembra-sim: ready");
  std::mt19937 random(static_cast<unsigned>(setting("TEMBRA_SEED", 1)));
  std::thread([] {}).join();  // a sanitizer starts a thread of its own with the first one
  const int threads = entriesOf("/proc/self/task");
  const int files = entriesOf("/proc/self/fd");
  int slow = 0;
  const int operations = setting("TEMBRA_OPERATIONS", 60);
  {
    const Kit kit(tembra_frontend_new(nullptr));
    ASSERT_TRUE(kit);
    for (int i = 0; i < operations && !testing::Test::HasFailure(); ++i) {
      const auto cancel = RandomOperation(kit.get(), random).toItsEnd();
      if (cancel && *cancel > kLongestCancel) ++slow;
      const Event more(tembra_frontend_next(kit.get(), 0));
      EXPECT_FALSE(more) << "an event behind the end: " << tembra_event_json(more.get());
    }
  }
  EXPECT_LE(slow, operations / 50) << "cancels that took longer than on an idle machine";
  expectEntries("/proc/self/task", threads);
  expectEntries("/proc/self/fd", files);
  router.signal(SIGTERM);
  const Ended ended = router.end();
  EXPECT_LE(ended.status, 1) << "1: the simulator was told what it never should be\n" << ended.errors;
}

}  // namespace
}  // namespace tembra::test
