// Preloaded by `tembra-isolate --speed N`: what the association library waits for ends N times sooner, in any program
// that loads the library. The program's own waits stay as they are, and so do clocks: a countdown that a front end
// shows is cut short, it does not run faster.
#include <dlfcn.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <ctime>

#include "platform/next_definition.h"

namespace {

using Nanoseconds = long long;
constexpr Nanoseconds kSecond = 1'000'000'000;
constexpr Nanoseconds kMicrosecond = 1'000;

template <typename Function>
Function* next(const char* name) {
  return reinterpret_cast<Function*>(tembra::nextDefinition(name));
}

// Whether the library made this call. (The thread sanitizer stands between, with a function of the call's own name.)
bool isTheLibrarys(const char* call, const void* caller) {
  Dl_info place{};
  if (dladdr(caller, &place) == 0) return false;
  return std::strstr(place.dli_fname, "libTembraAssoc.so") != nullptr ||
         (place.dli_sname != nullptr && std::strcmp(place.dli_sname, call) == 0);
}

// A receive time-out of no time at all would be one that never ends.
Nanoseconds hurried(Nanoseconds time) {
  const char* speed = std::getenv("TEMBRA_SPEED");
  if (speed == nullptr || time == 0) return time;
  return std::max(time / std::max(std::atoll(speed), 1LL), kMicrosecond);
}

}  // namespace

// C libraries differ in whether they promise not to throw.
extern "C" int setsockopt(int fd, int level, int option, const void* value,
                          socklen_t length) noexcept(noexcept(setsockopt(0, 0, 0, nullptr, 0))) {
  timeval time{};
  const bool isTimeout = level == SOL_SOCKET && option == SO_RCVTIMEO && length == sizeof time;
  if (isTimeout && isTheLibrarys("setsockopt", __builtin_return_address(0))) {
    std::memcpy(&time, value, sizeof time);
    const Nanoseconds wait = hurried(time.tv_sec * kSecond + time.tv_usec * kMicrosecond);
    time.tv_sec = wait / kSecond;
    time.tv_usec = static_cast<suseconds_t>(wait % kSecond / kMicrosecond);
    value = &time;
  }
  return next<int(int, int, int, const void*, socklen_t)>("setsockopt")(fd, level, option, value, length);
}

extern "C" int nanosleep(const timespec* time, timespec* left) {
  timespec wait = *time;
  if (isTheLibrarys("nanosleep", __builtin_return_address(0))) {
    const Nanoseconds wanted = hurried(time->tv_sec * kSecond + time->tv_nsec);
    wait.tv_sec = wanted / kSecond;
    wait.tv_nsec = static_cast<long>(wanted % kSecond);
  }
  return next<int(const timespec*, timespec*)>("nanosleep")(&wait, left);
}

extern "C" unsigned sleep(unsigned seconds) {
  if (!isTheLibrarys("sleep", __builtin_return_address(0))) return next<unsigned(unsigned)>("sleep")(seconds);
  const Nanoseconds wait = hurried(seconds * kSecond);
  const timespec time{static_cast<time_t>(wait / kSecond), static_cast<long>(wait % kSecond)};
  return next<int(const timespec*, timespec*)>("nanosleep")(&time, nullptr) == 0 ? 0 : seconds;
}
