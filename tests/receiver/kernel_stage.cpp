#include "kernel_stage.h"

#include <array>
#include <atomic>
#include <chrono>
#include <filesystem>
#include <functional>
#include <iterator>
#include <thread>

#include "occurrences.h"

namespace {

constexpr std::chrono::seconds kPatience{10};

std::array<std::atomic<int>, 64>& counts() {
  static std::array<std::atomic<int>, 64> each{};
  return each;
}

void countEvent(AssocEvent* event) { ++counts().at(static_cast<std::size_t>(event->code)); }

bool comesTrue(const std::function<bool()>& condition) {
  const auto end = std::chrono::steady_clock::now() + kPatience;
  while (!condition()) {
    if (std::chrono::steady_clock::now() > end) return false;
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
  return true;
}

std::size_t entriesOf(const char* folder) {
  const std::filesystem::directory_iterator entries(folder);
  return static_cast<std::size_t>(std::distance(begin(entries), end(entries)));
}

}  // namespace

KernelStage::KernelStage() {
  assoc.registerAssocEventCB(&countEvent);
  std::thread([] {}).join();  // a sanitizer may start a thread of its own with the first, and that one counts
}

void KernelStage::connect() { ASSERT_EQ(assoc.checkAssocConnection(), 0); }

const std::string& KernelStage::trace() { return trace_ += router.takeTrace(); }

std::size_t KernelStage::told(const std::string& text) { return occurrences(trace(), text); }

int KernelStage::events(int code) { return counts().at(static_cast<std::size_t>(code)); }

void KernelStage::await(const std::string& text, std::size_t times) {
  ASSERT_TRUE(comesTrue([&] { return told(text) >= times; })) << text << "\n" << trace();
}

void KernelStage::awaitEvents(int code, int times) {
  ASSERT_TRUE(comesTrue([=] { return events(code) >= times; })) << "event " << code;
}

std::size_t openDescriptors() { return entriesOf("/proc/self/fd"); }

std::size_t runningThreads() { return entriesOf("/proc/self/task"); }

void awaitDescriptors(std::size_t count) {
  EXPECT_TRUE(comesTrue([=] { return openDescriptors() == count; })) << openDescriptors() << " descriptors";
}

void awaitThreads(std::size_t count) {
  EXPECT_TRUE(comesTrue([=] { return runningThreads() == count; })) << runningThreads() << " threads";
}
