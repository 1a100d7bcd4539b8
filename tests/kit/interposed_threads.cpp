// sleep, threads, their waits and popen, between the library and the C library.
#include <pthread.h>
#include <sched.h>
#include <tembra/association.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstdio>
#include <memory>
#include <string>
#include <thread>

#include "kit/faults.h"
#include "kit/real_libc.h"
#include "kit/stage.h"
#include "kit/trace.h"

using kit::Call;

namespace {

struct Start {
  void* (*function)(void*);
  void* argument;
  kit::Stage* stage;
};

void* runReceiver(void* start) {
  const std::unique_ptr<Start> taken(static_cast<Start*>(start));
  taken->stage->kernel.receiverBegins();
  void* result = taken->function(taken->argument);
  taken->stage->kernel.receiverEnds();
  return result;
}

const void* objectOf(void* (*function)(void*)) {
  Dl_info info{};
  return dladdr(reinterpret_cast<void*>(function), &info) != 0 ? info.dli_fbase : nullptr;
}

// The library starts no other thread.
bool isReceiver(void* (*function)(void*)) {
  static const void* const library = objectOf(&TembraAssociation::receiverHelper);
  return objectOf(function) == library;
}

// The error is the result; errno says something else, as it may.
int failThread() {
  const int error = errno;
  kit::trace().addWatched(kit::kWatchConnection, "thread -> " + kit::errorName(error));
  errno = EBUSY;
  return error;
}

}  // namespace

extern "C" unsigned sleep(unsigned seconds) {
  KIT_REAL(sleep);
  kit::Stage* stage = kit::stage();
  if (stage == nullptr) return real(seconds);
  if (stage->clock == kit::Clock::kReal && stage->haste == 1) return real(seconds);
  if (stage->clock == kit::Clock::kReal) {
    std::this_thread::sleep_for(std::chrono::microseconds(seconds * 1'000'000LL / stage->haste));
    return 0;
  }
  if (kit::faults().strike(Call::kSleep, __builtin_return_address(0))) return static_cast<unsigned>(errno);
  return stage->kernel.sleep(seconds);
}

extern "C" int pthread_create(pthread_t* thread, const pthread_attr_t* attributes, void* (*function)(void*),
                              void* argument) noexcept {
  KIT_REAL(pthread_create);
  kit::Stage* stage = kit::stage();
  if (stage == nullptr || !isReceiver(function)) return real(thread, attributes, function, argument);
  if (kit::faults().strike(Call::kCreateThread, __builtin_return_address(0))) return failThread();
  kit::trace().addWatched(kit::kWatchConnection, "thread");
  stage->kernel.receiverCreated();
  auto start = std::make_unique<Start>(Start{function, argument, stage});
  int error = 0;
  {
    const kit::LibraryCall inside(true);
    error = real(thread, attributes, &runReceiver, start.get());
  }
  if (error == 0) {
    static_cast<void>(start.release());  // the thread's now
  } else {
    stage->kernel.receiverEnds();
  }
  return error;
}

extern "C" int pthread_detach(pthread_t thread) noexcept {
  KIT_REAL(pthread_detach);
  if (kit::stage() != nullptr) kit::trace().addWatched(kit::kWatchConnection, "detach");
  const int error = real(thread);
  const bool fails = kit::isInLibrary(__builtin_return_address(0)) &&
                     kit::faults().strike(Call::kDetachThread, __builtin_return_address(0));
  return fails ? errno : error;
}

// A wake-up for no reason is no failure, but it may happen at any time.
extern "C" int pthread_cond_timedwait(pthread_cond_t* condition, pthread_mutex_t* mutex, const timespec* deadline) {
  KIT_REAL(pthread_cond_timedwait);
  const void* const site = __builtin_return_address(0);
  const bool fails =
      kit::stage() != nullptr && kit::isInLibrary(site) && kit::faults().strike(Call::kAwaitChange, site);
  if (!fails) return real(condition, mutex, deadline);
  const int error = errno;
  pthread_mutex_unlock(mutex);
  sched_yield();
  pthread_mutex_lock(mutex);
  return error;
}

extern "C" FILE* popen(const char* command, const char* mode) {
  KIT_REAL(popen);
  if (kit::stage() == nullptr) return real(command, mode);
  FILE* pipe = nullptr;
  if (!kit::faults().strike(Call::kPopen, __builtin_return_address(0))) {
    const kit::LibraryCall inside(true);
    pipe = real(command, mode);
  }
  const int error = errno;
  kit::trace().addWatched(kit::kWatchConnection, std::string("popen ") + mode + " " + command +
                                                     (pipe == nullptr ? " -> " + kit::errorName(error) : ""));
  errno = error;
  return pipe;
}
