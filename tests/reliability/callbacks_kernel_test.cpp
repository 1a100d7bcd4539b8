// A callback may do anything, for as long as it likes.
#include <algorithm>
#include <condition_variable>
#include <mutex>

#include "endurance.h"
#include "operations.h"

using kit::Node;

namespace {

using Callbacks = Endurance;

/// Keeps whoever enters until it is opened.
class Barrier {
 public:
  void enter() {
    std::unique_lock<std::mutex> lock(mutex_);
    entered_ = true;
    changed_.notify_all();
    changed_.wait(lock, [this] { return open_; });
  }
  void awaitEntry() {
    std::unique_lock<std::mutex> lock(mutex_);
    changed_.wait(lock, [this] { return entered_; });
  }
  void open() {
    const std::lock_guard<std::mutex> lock(mutex_);
    open_ = true;
    changed_.notify_all();
  }

 private:
  std::mutex mutex_;
  std::condition_variable changed_;
  bool entered_ = false;
  bool open_ = false;
};

void callEach(TembraAssociation& assoc) {
  for (const Operation& operation : operations()) {
    if (operation.disturbsOpening()) continue;
    const auto begin = std::chrono::steady_clock::now();
    operation.call(assoc);
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(1)) << operation.name;
  }
}

}  // namespace

TEST_F(Callbacks, AreTriedWithEveryOperation) {
  std::vector<std::string> tried;
  for (const Operation& operation : operations()) tried.emplace_back(operation.name);
  std::sort(tried.begin(), tried.end());
  std::vector<std::string> exported = exportedOperations();
  std::sort(exported.begin(), exported.end());
  EXPECT_EQ(tried, exported);
}

// Each leaves a library that can be closed at once, opened again, and that hears the next answer.
TEST_F(Callbacks, MayCallEveryOperation) {
  router.database().nextId("17").put(kit::Device(12, "Lamp").zwave(5));
  router.hurry(kHaste);
  int calls = 0;
  for (const Operation& operation : operations()) {
    SCOPED_TRACE(operation.name);
    TembraAssociation::LCDAssocInit();
    std::atomic<bool> returned{false};
    inCallback([&](AssocEvent* event) {
      if (event->code != EVENT_ADDING) return;
      operation.call(assoc);
      returned = true;
    });
    connect();
    assoc.addDevZigbeeZwave();
    router.zwave().post(Node(5).bytes());
    awaitHeard(EVENT_ADDING, ++calls);
    close();
    EXPECT_TRUE(returned);
    router.forget();
  }
  expectPromptEnds();
}

// For seconds, when thousands of rounds are wanted.
TEST_F(Callbacks, MayBlockWhileOthersCallAndCloseAndOpen) {
  router.hurry(kHaste);
  Barrier barrier;
  inCallback([&](AssocEvent* event) {
    if (event->code == EVENT_ADDING) barrier.enter();
  });
  connect();
  assoc.addDevZigbeeZwave();
  router.zwave().post(Node(5).bytes());
  barrier.awaitEntry();
  {
    const Background other([this](int) { callEach(assoc); });
    const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(rounds());
    do {
      callEach(assoc);
      const auto begin = std::chrono::steady_clock::now();
      assoc.closeAssocConnection();
      EXPECT_EQ(assoc.checkAssocConnection(), 0);
      EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(1));
    } while (std::chrono::steady_clock::now() < end && !HasFailure());
  }
  EXPECT_EQ(heard(EVENT_ADDING), 1);
  barrier.open();
  close();
  expectPromptEnds();
}
