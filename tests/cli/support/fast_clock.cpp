// Makes a program's waits a hundred times shorter: receive time-outs and sleeps.
#include <dlfcn.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>

#include <cstring>

namespace {

constexpr long kFaster = 100;
constexpr long kMicrosecondsPerSecond = 1'000'000;

timeval shortened(const timeval& time) {
  const long microseconds = (time.tv_sec * kMicrosecondsPerSecond + time.tv_usec) / kFaster;
  return {microseconds / kMicrosecondsPerSecond, microseconds % kMicrosecondsPerSecond};
}

}  // namespace

extern "C" int setsockopt(int fd, int level, int option, const void* value, socklen_t length) noexcept {
  static const auto next =
      reinterpret_cast<int (*)(int, int, int, const void*, socklen_t)>(dlsym(RTLD_NEXT, "setsockopt"));
  if (level != SOL_SOCKET || option != SO_RCVTIMEO || length != sizeof(timeval)) {
    return next(fd, level, option, value, length);
  }
  timeval time{};
  std::memcpy(&time, value, sizeof time);
  time = shortened(time);
  return next(fd, level, option, &time, sizeof time);
}

extern "C" unsigned sleep(unsigned seconds) {
  usleep(static_cast<useconds_t>(seconds * kMicrosecondsPerSecond / kFaster));
  return 0;
}
