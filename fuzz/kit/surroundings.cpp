#include "kit/surroundings.h"

#include <pthread.h>
#include <tembra/association.h>
#include <tembra/service.h>
#include <unistd.h>

#include <cerrno>
#include <ctime>
#include <string>

#include "kit/real_libc.h"
#include "runner.h"
#include "servers.h"
#include "support/stage.h"

namespace fuzz {
namespace {

Surroundings* current = nullptr;
timespec now{};

template <typename Function>
Function* libraryFunction(const char* name) {
  return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

}  // namespace

Surroundings::Surroundings() {
  current = this;
  now = {1000, 0};
}
Surroundings::~Surroundings() { current = nullptr; }

}  // namespace fuzz

using fuzz::current;
using fuzz::now;

// ---- Time ----------------------------------------------------------------------------------------------------------

extern "C" int clock_gettime(clockid_t clock, timespec* time) noexcept {
  KIT_REAL(clock_gettime);
  if (current == nullptr || clock != CLOCK_MONOTONIC) return real(clock, time);
  *time = now;
  return 0;
}

extern "C" int pthread_cond_clockwait(pthread_cond_t* condition, pthread_mutex_t* mutex, clockid_t clock,
                                      const timespec* deadline) {
  KIT_REAL(pthread_cond_clockwait);
  if (current == nullptr) return real(condition, mutex, clock, deadline);
  now = *deadline;
  pthread_mutex_unlock(mutex);
  current->waiting();
  pthread_mutex_lock(mutex);
  return ETIMEDOUT;
}

// ---- The library ---------------------------------------------------------------------------------------------------

int TembraAssociation::checkAssocConnection() {
  if (current == nullptr) {
    return fuzz::libraryFunction<int(TembraAssociation*)>("_ZN17TembraAssociation20checkAssocConnectionEv")(this);
  }
  if (!current->opens()) return -1;
  sock = fuzz::Stage::current()->openSocket();
  fuzz::Stage::current()->bindSocket(sock);
  return 0;
}

void TembraAssociation::closeAssocConnection() {
  if (current == nullptr) {
    return fuzz::libraryFunction<void(TembraAssociation*)>("_ZN17TembraAssociation20closeAssocConnectionEv")(this);
  }
  if (sock > 0) close(sock);
  sock = 0;
}

int tembra_settle(int /*milliseconds*/) { return current != nullptr && current->settles() ? 0 : ETIMEDOUT; }
long long tembra_wait_left() { return 180'000; }

// ---- The kit -------------------------------------------------------------------------------------------------------

namespace tembra::frontend {

bool listens(ServerType server) { return current->listens(server); }

// Calls at once.
Runner::Runner(Inbox& inbox) : inbox_(inbox) {}
Runner::~Runner() = default;
void Runner::run(std::function<void()> call) {
  const std::function<void()> taken = std::move(call);
  taken();
  inbox_.callEnded();
}

}  // namespace tembra::frontend
