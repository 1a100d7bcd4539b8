// Everything that the threads of the world wait with, between them and the C library.
#include <fcntl.h>
#include <linux/futex.h>
#include <poll.h>
#include <pthread.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/time.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstdint>
#include <ctime>
#include <map>
#include <memory>
#include <mutex>

#include "campaign/account.h"
#include "campaign/real_poll.h"
#include "campaign/world_clock.h"
#include "kit/real_libc.h"

using campaign::Awaited;
using campaign::fromTimespec;
using campaign::kMillisecond;
using campaign::kSecond;
using campaign::Time;
using campaign::worldClock;
using campaign::WorldClock;

namespace {

bool tellsTheTimeOfDay(clockid_t clock) {
  return clock == CLOCK_MONOTONIC || clock == CLOCK_BOOTTIME || clock == CLOCK_REALTIME;
}

bool mayBlock(int socket, int flags) {
  return (flags & MSG_DONTWAIT) == 0 && (fcntl(socket, F_GETFL) & O_NONBLOCK) == 0;
}

Time fromTimeval(const timeval& time) { return time.tv_sec * kSecond + time.tv_usec * 1000; }

// The time-outs as they were set: the kernel rounds them up to its ticks.
struct {
  std::mutex mutex;
  std::map<int, Time> bySocket;
} exactTimeouts;

std::optional<Time> receiveDeadline(WorldClock& clock, int socket) {
  constexpr Time kLongestTick = 20 * kMillisecond;
  timeval timeout{};
  socklen_t length = sizeof timeout;
  getsockopt(socket, SOL_SOCKET, SO_RCVTIMEO, &timeout, &length);
  const Time rounded = fromTimeval(timeout);
  if (rounded == 0) return std::nullopt;
  const std::lock_guard lock(exactTimeouts.mutex);
  const auto exact = exactTimeouts.bySocket.find(socket);
  const bool isThisOne =
      exact != exactTimeouts.bySocket.end() && exact->second <= rounded && rounded - exact->second < kLongestTick;
  return clock.now() + (isThisOne ? exact->second : rounded);
}

// False, and errno as a receive leaves it, when nothing arrived in time.
bool awaitDatagram(WorldClock& clock, int socket) {
  pollfd entry{.fd = socket, .events = POLLIN, .revents = 0};
  if (campaign::realPoll({&entry, 1}, 0) > 0) return true;
  if (clock.wait({.deadline = receiveDeadline(clock, socket), .descriptors = {&entry, 1}})) return true;
  errno = EAGAIN;
  return false;
}

using Ended = std::shared_ptr<int>;  // 1: so it is

struct ThreadStart {
  void* (*function)(void*);
  void* argument;
  Ended ended = std::make_shared<int>(0);
};

// Of the threads that somebody may wait for.
struct {
  std::mutex mutex;
  std::map<pthread_t, Ended> ended;
} joinable;

void* liveInWorld(void* argument) {
  const std::unique_ptr<ThreadStart> start(static_cast<ThreadStart*>(argument));
  void* const result = start->function(start->argument);
  __atomic_store_n(start->ended.get(), 1, __ATOMIC_RELEASE);
  worldClock()->threadEnds();
  return result;
}

Ended endOfThread(pthread_t thread) {
  const std::lock_guard lock(joinable.mutex);
  const auto found = joinable.ended.extract(thread);
  return found.empty() ? nullptr : found.mapped();
}

int waitForCondition(WorldClock& clock, pthread_cond_t* condition, pthread_mutex_t* mutex, const timespec* deadline) {
  const auto moment = deadline == nullptr ? std::nullopt : std::optional(fromTimespec(*deadline));
  const Awaited awaited{.deadline = moment, .descriptors = {}, .condition = condition};
  const bool ready = clock.wait(awaited, [mutex] { pthread_mutex_unlock(mutex); });
  pthread_mutex_lock(mutex);
  return ready ? 0 : ETIMEDOUT;
}

long waitForWord(WorldClock& clock, const int* word, int value, const timespec* deadline) {
  if (__atomic_load_n(word, __ATOMIC_ACQUIRE) != value) {
    errno = EAGAIN;
    return -1;
  }
  const auto moment = deadline == nullptr ? std::nullopt : std::optional(fromTimespec(*deadline));
  if (clock.wait({.deadline = moment, .descriptors = {}, .word = word, .value = value})) return 0;
  errno = ETIMEDOUT;
  return -1;
}

}  // namespace

int campaign::realPoll(std::span<pollfd> entries, int milliseconds) {
  KIT_REAL(poll);
  return real(entries.data(), entries.size(), milliseconds);
}

extern "C" int clock_gettime(clockid_t clock, timespec* time) noexcept {
  KIT_REAL(clock_gettime);
  WorldClock* const world = worldClock();
  if (world == nullptr || !tellsTheTimeOfDay(clock)) return real(clock, time);
  *time = campaign::toTimespec(world->now());
  return 0;
}

#if __SIZEOF_POINTER__ == 4
// The C++ library of 32 bits was built with short times, and their call has the plain name.
struct ShortTime {
  std::int32_t seconds;
  std::int32_t nanoseconds;
};

extern "C" int clockGettimeShort(clockid_t clock, ShortTime* time) noexcept __asm__("clock_gettime");

extern "C" int clockGettimeShort(clockid_t clock, ShortTime* time) noexcept {
  timespec whole{};
  const int result = clock_gettime(clock, &whole);
  *time = {static_cast<std::int32_t>(whole.tv_sec), static_cast<std::int32_t>(whole.tv_nsec)};
  return result;
}
#endif

extern "C" int poll(pollfd* entries, nfds_t count, int milliseconds) {
  const std::span<pollfd> all(entries, count);
  WorldClock* const world = worldClock();
  if (world == nullptr) return campaign::realPoll(all, milliseconds);
  const int ready = campaign::realPoll(all, 0);
  if (ready != 0 || milliseconds == 0) return ready;
  const auto deadline = milliseconds < 0 ? std::nullopt : std::optional(world->now() + milliseconds * kMillisecond);
  return world->wait({.deadline = deadline, .descriptors = all}) ? campaign::realPoll(all, 0) : 0;
}

extern "C" int setsockopt(int socket, int level, int option, const void* value, socklen_t length) noexcept {
  KIT_REAL(setsockopt);
  if (level == SOL_SOCKET && option == SO_RCVTIMEO && length == sizeof(timeval)) {
    const std::lock_guard lock(exactTimeouts.mutex);
    exactTimeouts.bySocket[socket] = fromTimeval(*static_cast<const timeval*>(value));
  }
  return real(socket, level, option, value, length);
}

extern "C" ssize_t recvfrom(int socket, void* buffer, size_t size, int flags, sockaddr* from, socklen_t* length) {
  KIT_REAL(recvfrom);
  WorldClock* const world = worldClock();
  campaign::ReceiveThread::waits();
  const bool isInTime = world == nullptr || !mayBlock(socket, flags) || awaitDatagram(*world, socket);
  const ssize_t received = isInTime ? real(socket, buffer, size, flags, from, length) : -1;
  const int error = errno;
  campaign::ReceiveThread::hears(from, buffer, received);
  errno = error;
  return received;
}

extern "C" ssize_t recv(int socket, void* buffer, size_t size, int flags) {
  KIT_REAL(recv);
  WorldClock* const world = worldClock();
  if (world != nullptr && mayBlock(socket, flags) && !awaitDatagram(*world, socket)) return -1;
  return real(socket, buffer, size, flags);
}

extern "C" unsigned sleep(unsigned seconds) {
  KIT_REAL(sleep);
  WorldClock* const world = worldClock();
  if (world == nullptr) return real(seconds);
  world->sleepUntil(world->now() + seconds * kSecond);
  return 0;
}

extern "C" int nanosleep(const timespec* time, timespec* left) {
  KIT_REAL(nanosleep);
  WorldClock* const world = worldClock();
  if (world == nullptr) return real(time, left);
  world->sleepUntil(world->now() + fromTimespec(*time));
  return 0;
}

extern "C" int clock_nanosleep(clockid_t clock, int flags, const timespec* time, timespec* left) {
  KIT_REAL(clock_nanosleep);
  WorldClock* const world = worldClock();
  if (world == nullptr) return real(clock, flags, time, left);
  world->sleepUntil(fromTimespec(*time) + ((flags & TIMER_ABSTIME) != 0 ? 0 : world->now()));
  return 0;
}

extern "C" int pthread_cond_timedwait(pthread_cond_t* condition, pthread_mutex_t* mutex, const timespec* deadline) {
  KIT_REAL(pthread_cond_timedwait);
  WorldClock* const world = worldClock();
  return world == nullptr ? real(condition, mutex, deadline) : waitForCondition(*world, condition, mutex, deadline);
}

extern "C" int pthread_cond_clockwait(pthread_cond_t* condition, pthread_mutex_t* mutex, clockid_t clock,
                                      const timespec* deadline) {
  KIT_REAL(pthread_cond_clockwait);
  WorldClock* const world = worldClock();
  if (world == nullptr) return real(condition, mutex, clock, deadline);
  return waitForCondition(*world, condition, mutex, deadline);
}

extern "C" int pthread_cond_wait(pthread_cond_t* condition, pthread_mutex_t* mutex) {
  KIT_REAL(pthread_cond_wait);
  WorldClock* const world = worldClock();
  return world == nullptr ? real(condition, mutex) : waitForCondition(*world, condition, mutex, nullptr);
}

extern "C" int pthread_cond_broadcast(pthread_cond_t* condition) noexcept {
  KIT_REAL(pthread_cond_broadcast);
  if (worldClock() != nullptr) worldClock()->announce(condition);
  return real(condition);
}

extern "C" int pthread_create(pthread_t* thread, const pthread_attr_t* attributes, void* (*function)(void*),
                              void* argument) noexcept {
  KIT_REAL(pthread_create);
  WorldClock* const world = worldClock();
  if (world == nullptr) return real(thread, attributes, function, argument);
  auto start = std::make_unique<ThreadStart>(ThreadStart{function, argument});
  const Ended ended = start->ended;
  world->threadBegins();
  const int error = real(thread, attributes, &liveInWorld, start.get());
  if (error != 0) {
    world->threadEnds();
    return error;
  }
  static_cast<void>(start.release());  // the thread's now
  const std::lock_guard lock(joinable.mutex);
  joinable.ended[*thread] = ended;
  return 0;
}

extern "C" int pthread_detach(pthread_t thread) noexcept {
  KIT_REAL(pthread_detach);
  endOfThread(thread);
  return real(thread);
}

extern "C" int pthread_join(pthread_t thread, void** result) {
  KIT_REAL(pthread_join);
  WorldClock* const world = worldClock();
  const Ended ended = world == nullptr ? nullptr : endOfThread(thread);
  if (ended) world->wait({.deadline = std::nullopt, .descriptors = {}, .word = ended.get(), .value = 0});
  return real(thread, result);
}

// The C++ library's futures wait in a futex of their own. Whoever calls gives as many arguments as the kernel takes;
// the rest is passed on unread, as the C library does, for which a function with a variable number of them is no good.
// No KIT_REAL here: two threads that look for the same function at once wait for each other by this very call.
extern "C" long interposedSyscall(long number, const int* word, long operation, long value, const timespec* deadline,
                                  long e, long f) noexcept __asm__("syscall");

extern "C" long interposedSyscall(long number, const int* word, long operation, long value, const timespec* deadline,
                                  long e, long f) noexcept {
  static std::atomic<decltype(&::syscall)> found{nullptr};
  auto* real = found.load(std::memory_order_relaxed);
  if (real == nullptr) {
    real = reinterpret_cast<decltype(&::syscall)>(kit::nextDefinition("__interceptor_syscall", "syscall"));
    found.store(real, std::memory_order_relaxed);
  }
  WorldClock* const world = worldClock();
  const bool waits = number == SYS_futex && (operation & FUTEX_CMD_MASK) == FUTEX_WAIT_BITSET;
  if (!waits || world == nullptr) return real(number, word, operation, value, deadline, e, f);
  return waitForWord(*world, word, static_cast<int>(value), deadline);
}
