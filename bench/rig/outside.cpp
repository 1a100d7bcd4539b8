#include "rig/outside.h"

#include <fcntl.h>
#include <unistd.h>

#include <atomic>

namespace bench {
namespace {

std::atomic<bool> watching{false};
std::atomic<Clock::rep> ownTicks{0};
std::atomic<std::size_t> ownAllocations{0};
std::atomic<Clock::rep> firstWaitTicks{0};
std::atomic<bool> noDatabase{false};

thread_local bool inside = false;
thread_local Clock::time_point enteredAt;

bool isWatching() { return watching.load(std::memory_order_relaxed); }

void enter() {
  inside = true;
  if (isWatching()) enteredAt = Clock::now();
}

void leave() {
  inside = false;
  if (isWatching() && enteredAt != Clock::time_point{}) ownTicks += (Clock::now() - enteredAt).count();
}

}  // namespace

Inside::Inside() { enter(); }
Inside::~Inside() { leave(); }

Outside::Outside() : wasInside_(inside) {
  if (wasInside_) leave();
}
Outside::~Outside() {
  if (wasInside_) enter();
}

void enterForGood() {
  if (!inside) enter();
}

namespace own_code {

void start() {
  ownTicks = 0;
  ownAllocations = 0;
  watching = true;
}
void stop() { watching = false; }
double seconds() { return std::chrono::duration<double>(Clock::duration(ownTicks.load())).count(); }
std::size_t allocations() { return ownAllocations; }
void allocated() {
  if (inside && isWatching()) ++ownAllocations;
}

}  // namespace own_code

namespace first_wait {

void forget() { firstWaitTicks = 0; }
void note() {
  if (!happened()) firstWaitTicks = Clock::now().time_since_epoch().count();
}
bool happened() { return firstWaitTicks != 0; }
Clock::time_point when() { return Clock::time_point(Clock::duration(firstWaitTicks.load())); }

}  // namespace first_wait

NoDatabase::NoDatabase() : standardError_(dup(STDERR_FILENO)) {
  const tembra::Descriptor nowhere(open("/dev/null", O_WRONLY | O_CLOEXEC));
  dup2(nowhere.get(), STDERR_FILENO);
  noDatabase = true;
}
NoDatabase::~NoDatabase() {
  noDatabase = false;
  dup2(standardError_.get(), STDERR_FILENO);
}
bool NoDatabase::isOn() { return noDatabase.load(std::memory_order_relaxed); }

}  // namespace bench
