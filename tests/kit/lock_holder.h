// Another process that has the database.
#ifndef TEMBRA_TESTS_KIT_LOCK_HOLDER_H
#define TEMBRA_TESTS_KIT_LOCK_HOLDER_H

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <tembra/globals.h>
#include <unistd.h>

namespace kit {

/// Holds the lock of a writer until it is released.
class LockHolder {
 public:
  LockHolder() {
    int ready[2] = {};
    int release[2] = {};
    EXPECT_EQ(pipe2(ready, O_CLOEXEC), 0);
    EXPECT_EQ(pipe2(release, O_CLOEXEC), 0);
    process_ = fork();
    if (process_ == 0) {
      close(release[1]);
      holdUntilReleased(ready[1], release[0]);
    }
    close(ready[1]);
    close(release[0]);
    release_ = release[1];
    char byte = 0;
    EXPECT_EQ(read(ready[0], &byte, 1), 1) << "the lock was not to be had";
    close(ready[0]);
  }
  ~LockHolder() { release(); }
  LockHolder(const LockHolder&) = delete;
  LockHolder& operator=(const LockHolder&) = delete;

  void release() {
    if (process_ < 0) return;
    close(release_);
    waitpid(process_, nullptr, 0);
    process_ = -1;
  }

 private:
  [[noreturn]] static void holdUntilReleased(int ready, int release) {
    const int file = open(DBName, O_RDWR | O_CLOEXEC);
    struct flock lock = {};
    lock.l_type = F_WRLCK;
    lock.l_whence = SEEK_SET;
    char byte = 0;
    const bool held = file >= 0 && fcntl(file, F_SETLK, &lock) == 0 && write(ready, &byte, 1) == 1;
    _exit(held && read(release, &byte, 1) == 0 ? 0 : 1);
  }

  pid_t process_ = -1;
  int release_ = -1;
};

}  // namespace kit

#endif
