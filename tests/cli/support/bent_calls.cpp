// Bends the calls of a program under test: TEMBRA_FAILING names the row of the table whose call fails.
#include <arpa/inet.h>
#include <pthread.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>

#include "platform/next_definition.h"

namespace {

struct Row {
  const char* name;
  int error;
};

constexpr Row kRows[] = {
    {"socket", EMFILE},       {"setsockopt", EPERM},  {"bind", EACCES},           {"sendto", EPERM},
    {"sendto-home", ENOBUFS}, {"own-thread", EAGAIN}, {"receive-thread", EAGAIN},
};

// The error that the call is to fail with; 0: it is left alone.
int errorOf(const char* name) {
  const char* failing = std::getenv("TEMBRA_FAILING");
  if (failing == nullptr || std::strcmp(failing, name) != 0) return 0;
  for (const Row& row : kRows) {
    if (std::strcmp(row.name, name) == 0) return row.error;
  }
  std::abort();
}

template <typename Function>
Function* next(const char* name) {
  return reinterpret_cast<Function*>(tembra::nextDefinition(name));
}

bool isHome(const sockaddr* address) {
  constexpr in_port_t kHomePort = 9999;
  sockaddr_in place{};
  std::memcpy(&place, address, sizeof place);
  return ntohs(place.sin_port) == kHomePort;
}

int fail(int error) {
  errno = error;
  return -1;
}

}  // namespace

extern "C" int socket(int domain, int type, int protocol) noexcept {
  const int error = errorOf("socket");
  return error != 0 ? fail(error) : next<int(int, int, int)>("socket")(domain, type, protocol);
}

extern "C" int setsockopt(int fd, int level, int option, const void* value, socklen_t length) noexcept {
  const int error = option == SO_PRIORITY ? errorOf("setsockopt") : 0;
  if (error != 0) return fail(error);
  return next<int(int, int, int, const void*, socklen_t)>("setsockopt")(fd, level, option, value, length);
}

extern "C" int bind(int fd, const sockaddr* address, socklen_t length) noexcept {
  const int error = errorOf("bind");
  return error != 0 ? fail(error) : next<int(int, const sockaddr*, socklen_t)>("bind")(fd, address, length);
}

extern "C" ssize_t sendto(int fd, const void* bytes, size_t size, int flags, const sockaddr* address,
                          socklen_t length) {
  int error = errorOf("sendto");
  if (error == 0 && isHome(address)) error = errorOf("sendto-home");
  if (error != 0) return fail(error);
  using Sendto = ssize_t(int, const void*, size_t, int, const sockaddr*, socklen_t);
  return next<Sendto>("sendto")(fd, bytes, size, flags, address, length);
}

// The program starts threads on its first one only; the library starts its own on whichever thread opens it.
extern "C" int pthread_create(pthread_t* thread, const pthread_attr_t* attributes, void* (*start)(void*),
                              void* argument) noexcept {
  const int error = errorOf(gettid() == getpid() ? "own-thread" : "receive-thread");
  if (error != 0) return error;
  using Create = int(pthread_t*, const pthread_attr_t*, void* (*)(void*), void*);
  return next<Create>("pthread_create")(thread, attributes, start, argument);
}
