#include "kit/virtual_kernel.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <utility>

#include "kit/real_libc.h"
#include "kit/trace.h"

namespace kit {
namespace {

constexpr std::chrono::seconds kHang{40};
constexpr long kForever = std::numeric_limits<long>::max();

thread_local bool isReceiver = false;

[[noreturn]] void reportHang() {
  const std::string trace = kit::trace().takeLines();
  dprintf(STDERR_FILENO, "the library does not come to rest; its trace since the last look:\n%s", trace.c_str());
  std::abort();
}

// A socket that was shut down gives EAGAIN to a reader who will not wait, but 0 at once to one who would.
ssize_t receiveNow(const pollfd& polled, void* buffer, size_t size, int flags, sockaddr* from, socklen_t* length) {
  KIT_REAL(recvfrom);
  const int patience = (polled.revents & POLLHUP) != 0 ? 0 : MSG_DONTWAIT;
  return real(polled.fd, buffer, size, flags | patience, from, length);
}

}  // namespace

VirtualKernel::VirtualKernel() : wake_(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {}

long VirtualKernel::now() {
  const Lock lock(mutex_);
  return now_;
}

void VirtualKernel::advance(long seconds) {
  Lock lock(mutex_);
  settle(lock);
  const long target = now_ + seconds;
  while (Wait* due = earliestUntil(target)) {
    now_ = std::max(now_, due->deadline);
    fire(*due, EAGAIN);
    settle(lock);
  }
  now_ = target;
}

void VirtualKernel::settle() {
  Lock lock(mutex_);
  settle(lock);
}

void VirtualKernel::awaitEnd() {
  Lock lock(mutex_);
  await(lock, &VirtualKernel::isWithoutReceivers);
}

void VirtualKernel::awaitSleeper() {
  Lock lock(mutex_);
  await(lock, &VirtualKernel::hasSleeper);
}

bool VirtualKernel::hasSleeper() const {
  return std::any_of(waits_.begin(), waits_.end(), [](const Wait* wait) { return !wait->isReceive; });
}

void VirtualKernel::settle(Lock& lock) { await(lock, &VirtualKernel::isSettled); }

void VirtualKernel::await(Lock& lock, bool (VirtualKernel::*condition)() const) {
  const auto deadline = std::chrono::system_clock::now() + kHang;
  while (!(this->*condition)()) {
    if (changed_.wait_until(lock, deadline) == std::cv_status::timeout && !(this->*condition)()) reportHang();
  }
}

bool VirtualKernel::nothingFired() const {
  return std::none_of(waits_.begin(), waits_.end(), [](const Wait* wait) { return wait->fired; });
}

// A receive thread that sleeps in a callback is at rest, too, whatever waits in its socket.
bool VirtualKernel::isSettled() const {
  if (!nothingFired()) return false;
  const auto parked =
      std::count_if(waits_.begin(), waits_.end(), [](const Wait* wait) { return wait->ownedByReceiver; });
  if (parked != receivers_) return false;
  const bool receiving = std::any_of(waits_.begin(), waits_.end(), [](const Wait* wait) { return wait->isReceive; });
  return queued_ == 0 || !receiving;
}

VirtualKernel::Wait* VirtualKernel::earliestUntil(long limit) {
  Wait* earliest = nullptr;
  for (Wait* wait : waits_) {
    if (wait->deadline <= limit && (earliest == nullptr || wait->deadline < earliest->deadline)) earliest = wait;
  }
  return earliest;
}

void VirtualKernel::fire(Wait& wait, int error) {
  wait.fired = true;
  wait.error = error;
  if (wait.isReceive) eventfd_write(wake_, 1);
  changed_.notify_all();
}

void VirtualKernel::interruptReceive(int error) {
  Lock lock(mutex_);
  settle(lock);
  for (Wait* wait : waits_) {
    if (wait->isReceive) fire(*wait, error);
  }
  settle(lock);
}

void VirtualKernel::interruptSleep(unsigned remaining) {
  const Lock lock(mutex_);
  sleepRemainder_ = remaining;
}

void VirtualKernel::receiverCreated() {
  const Lock lock(mutex_);
  ++receivers_;
}

void VirtualKernel::receiverBegins() { isReceiver = true; }

void VirtualKernel::receiverEnds() {
  const Lock lock(mutex_);
  --receivers_;
  changed_.notify_all();
}

void VirtualKernel::setTimeout(int descriptor, long seconds) {
  const Lock lock(mutex_);
  timeouts_[descriptor] = seconds;
}

void VirtualKernel::datagramPosted() {
  const Lock lock(mutex_);
  ++queued_;
}

void VirtualKernel::socketChanged(int descriptor) {
  const Lock lock(mutex_);
  queued_ = 0;
  timeouts_.erase(descriptor);
  changed_.notify_all();
}

void VirtualKernel::park(Wait& wait) {
  const Lock lock(mutex_);
  waits_.push_back(&wait);
  changed_.notify_all();
}

// Whether the wait was fired, rather than ended by a datagram.
bool VirtualKernel::leave(Wait& wait) {
  const Lock lock(mutex_);
  waits_.remove(&wait);
  if (!wait.fired) return false;
  eventfd_t count = 0;
  if (wait.isReceive) eventfd_read(wake_, &count);
  changed_.notify_all();
  return true;
}

ssize_t VirtualKernel::receive(int descriptor, void* buffer, size_t size, int flags, sockaddr* from,
                               socklen_t* length) {
  Wait wait{kForever, true, isReceiver};
  {
    const Lock lock(mutex_);
    const auto timeout = timeouts_.find(descriptor);
    if (timeout != timeouts_.end() && timeout->second != 0) wait.deadline = now_ + timeout->second;
  }
  for (;;) {
    park(wait);
    pollfd polled[] = {{descriptor, POLLIN, 0}, {wake_, POLLIN, 0}};
    poll(polled, 2, -1);
    if (leave(wait)) {
      errno = wait.error;
      return -1;
    }
    const ssize_t received = receiveNow(polled[0], buffer, size, flags, from, length);
    if (received < 0 && errno == EAGAIN) continue;  // woken for another thread
    if (received < 0) return received;
    const Lock lock(mutex_);
    queued_ = std::max(0, queued_ - 1);
    return received;
  }
}

unsigned VirtualKernel::sleep(unsigned seconds) {
  trace().add("sleep " + std::to_string(seconds));
  {
    Lock lock(mutex_);
    if (sleepRemainder_ > 0) return std::exchange(sleepRemainder_, 0);
  }
  if (std::this_thread::get_id() == testThread_) {
    advance(seconds);
    return 0;
  }
  Wait wait{now() + static_cast<long>(seconds), false, isReceiver};
  park(wait);
  {
    Lock lock(mutex_);
    while (!wait.fired) changed_.wait(lock);
  }
  leave(wait);
  return 0;
}

}  // namespace kit
