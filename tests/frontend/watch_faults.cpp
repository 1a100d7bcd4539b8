// Between the server of watchers and the C library.
#include "watch_faults.h"

#include <sys/eventfd.h>
#include <sys/stat.h>

#include "kit/real_libc.h"

namespace tembra::test {

WatchFaults& watchFaults() {
  static WatchFaults faults;
  return faults;
}

}  // namespace tembra::test

namespace {

using tembra::test::watchFaults;

int answer(const void* from, std::size_t length, void* value, socklen_t* size) {
  const bool hasRoom = *size >= length;
  *size = static_cast<socklen_t>(length);
  if (hasRoom) std::memcpy(value, from, length);
  if (!hasRoom) errno = ERANGE;
  return hasRoom ? 0 : -1;
}

}  // namespace

extern "C" int getsockopt(int socket, int level, int name, void* value, socklen_t* size) noexcept {
  KIT_REAL(getsockopt);
  const auto& peer = watchFaults().peer;
  if (level != SOL_SOCKET || !peer) return real(socket, level, name, value, size);
  const ucred credentials{getpid(), peer->user, peer->group};
  if (name == SO_PEERCRED) return answer(&credentials, sizeof credentials, value, size);
  if (name == SO_PEERGROUPS) return answer(&peer->otherGroup, sizeof peer->otherGroup, value, size);
  return real(socket, level, name, value, size);
}

extern "C" uid_t geteuid() noexcept {
  KIT_REAL(geteuid);
  return watchFaults().self.value_or(real());
}

extern "C" int lchown(const char* path, uid_t user, gid_t group) noexcept {
  KIT_REAL(lchown);
  struct stat status {};
  lstat(path, &status);
  watchFaults().rightsAtFirst = status.st_mode & 07777;
  return real(path, user, group);
}

extern "C" int socket(int family, int type, int protocol) noexcept {
  KIT_REAL(socket);
  if (watchFaults().failing != "socket") return real(family, type, protocol);
  errno = EMFILE;
  return -1;
}

extern "C" int eventfd(unsigned count, int flags) noexcept {
  KIT_REAL(eventfd);
  if (watchFaults().failing != "eventfd") return real(count, flags);
  errno = EMFILE;
  return -1;
}

extern "C" int pthread_create(pthread_t* thread, const pthread_attr_t* attributes, void* (*function)(void*),
                              void* argument) noexcept {
  KIT_REAL(pthread_create);
  return watchFaults().failing == "pthread_create" ? EMFILE : real(thread, attributes, function, argument);
}
