// Threads, time, pipes and name services between the library and the C library. On a stage a thread runs at once to
// its end, time costs nothing, and no shell and no name server is asked.
#include <netdb.h>
#include <netinet/in.h>
#include <pthread.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <ctime>

#include "kit/real_libc.h"
#include "support/stage.h"

using fuzz::Fault;
using fuzz::Stage;

extern "C" int pthread_create(pthread_t* thread, const pthread_attr_t* attributes, void* (*function)(void*),
                              void* argument) noexcept {
  KIT_REAL(pthread_create);
  Stage* stage = Stage::current();
  if (stage == nullptr) return real(thread, attributes, function, argument);
  if (stage->router().strikes(Fault::kThread)) return EAGAIN;
  *thread = pthread_self();
  function(argument);
  return 0;
}

extern "C" int pthread_detach(pthread_t thread) noexcept {
  KIT_REAL(pthread_detach);
  return Stage::current() == nullptr ? real(thread) : 0;
}

// Nothing that is waited for on the only thread would ever come.
extern "C" int pthread_cond_timedwait(pthread_cond_t* condition, pthread_mutex_t* mutex, const timespec* deadline) {
  KIT_REAL(pthread_cond_timedwait);
  return Stage::current() == nullptr ? real(condition, mutex, deadline) : ETIMEDOUT;
}

extern "C" unsigned sleep(unsigned seconds) {
  KIT_REAL(sleep);
  Stage* stage = Stage::current();
  if (stage == nullptr) return real(seconds);
  return stage->router().strikes(Fault::kSleepsEndEarly) ? seconds / 2 : 0;
}

extern "C" int nanosleep(const timespec* wait, timespec* rest) {
  KIT_REAL(nanosleep);
  return Stage::current() == nullptr ? real(wait, rest) : 0;
}

extern "C" FILE* popen(const char* command, const char* mode) {
  KIT_REAL(popen);
  Stage* stage = Stage::current();
  if (stage == nullptr) return real(command, mode);
  if (stage->router().strikes(Fault::kPipe)) return nullptr;
  const char* text = stage->router().settings();
  FILE* pipe = fmemopen(nullptr, std::strlen(text) + 1, "w+");
  std::fputs(text, pipe);
  std::rewind(pipe);
  return pipe;
}

extern "C" int pclose(FILE* pipe) {
  KIT_REAL(pclose);
  return Stage::current() == nullptr ? real(pipe) : std::fclose(pipe);
}

// One host has a name, one has a name of another family, one has no address.
extern "C" hostent* gethostbyname(const char* name) {
  KIT_REAL(gethostbyname);
  if (Stage::current() == nullptr) return real(name);
  static in_addr address = {htonl(INADDR_LOOPBACK)};
  static char* one[] = {reinterpret_cast<char*>(&address), nullptr};
  static char* none[] = {nullptr};
  static hostent host{};
  const char first = name[0];
  if (first != 'h' && first != 'v' && first != 'n') return nullptr;
  host.h_addrtype = first == 'v' ? AF_INET6 : AF_INET;
  host.h_length = sizeof address;
  host.h_addr_list = first == 'n' ? none : one;
  return &host;
}

extern "C" servent* getservbyname(const char* name, const char* protocol) {
  KIT_REAL(getservbyname);
  if (Stage::current() == nullptr) return real(name, protocol);
  static servent service{};
  service.s_port = htons(80);
  return name[0] == 's' && protocol[0] == 't' ? &service : nullptr;
}
