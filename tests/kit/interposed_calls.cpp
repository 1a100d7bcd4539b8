// Waits, signals, names and objects: what else the library asks of the C and C++ libraries, and two questions to Depot.
#include <depot.h>
#include <netdb.h>
#include <netinet/in.h>
#include <pthread.h>

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <new>

#include "kit/faults.h"
#include "kit/real_libc.h"
#include "kit/stage.h"

using kit::Call;

namespace {

bool watches(const void* site) { return kit::stage() != nullptr && kit::isInLibrary(site); }

bool fails(Call call, const void* site) { return watches(site) && kit::faults().strike(call, site); }

char loopback[] = {127, 0, 0, 1};
char* loopbacks[] = {loopback, nullptr};
char anyName[] = "any";
hostent anyHost = {anyName, nullptr, AF_INET, 4, loopbacks};
servent anyService = {anyName, nullptr, 0, anyName};

}  // namespace

extern "C" int pthread_sigmask(int how, const sigset_t* set, sigset_t* before) noexcept {
  KIT_REAL(pthread_sigmask);
  return fails(Call::kBlockSignals, __builtin_return_address(0)) ? errno : real(how, set, before);
}

// With virtual time nobody waits.
extern "C" int nanosleep(const timespec* time, timespec* left) {
  KIT_REAL(nanosleep);
  if (fails(Call::kPause, __builtin_return_address(0))) return -1;
  const bool isVirtual = watches(__builtin_return_address(0)) && kit::stage()->clock == kit::Clock::kVirtual;
  return isVirtual ? 0 : real(time, left);
}

// The library gets an answer for every name: no network and no file of the machine is asked.
extern "C" hostent* gethostbyname(const char* name) {
  KIT_REAL(gethostbyname);
  if (!watches(__builtin_return_address(0))) return real(name);
  return fails(Call::kFindHost, __builtin_return_address(0)) ? nullptr : &anyHost;
}

extern "C" servent* getservbyname(const char* name, const char* protocol) {
  KIT_REAL(getservbyname);
  if (!watches(__builtin_return_address(0))) return real(name, protocol);
  return fails(Call::kFindService, __builtin_return_address(0)) ? nullptr : &anyService;
}

extern "C" char* strdup(const char* text) noexcept {
  if (fails(Call::kCopyText, __builtin_return_address(0))) return nullptr;
  const std::size_t size = std::strlen(text) + 1;
  void* const copy = std::malloc(size);
  return copy == nullptr ? nullptr : static_cast<char*>(std::memcpy(copy, text, size));
}

extern "C" int dpfdesc(DEPOT* depot) {
  KIT_REAL(dpfdesc);
  return fails(Call::kDatabaseFile, __builtin_return_address(0)) ? -1 : real(depot);
}

#if !KIT_THREAD_SANITIZER

void* operator new(std::size_t size) {
  void* const block = fails(Call::kMakeObject, __builtin_return_address(0)) ? nullptr : std::malloc(size);
  if (block == nullptr) throw std::bad_alloc();
  return block;
}

void operator delete(void* block) noexcept { std::free(block); }
void operator delete(void* block, std::size_t /*size*/) noexcept { std::free(block); }

#endif
