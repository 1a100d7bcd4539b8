// A database whose time a system with 32-bit times cannot tell: its status cannot be asked for then. That says nothing
// about the file, which is neither repaired nor deleted, nor read without a look at it.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/time.h>
#include <tembra/globals.h>

#include <cerrno>
#include <climits>

#include "database/damages.h"
#include "house.h"
#include "kit/real_libc.h"
#include "readers.h"

using kit::Bytes;
using kit::lines;
using kit::Router;

namespace {

/// Whose calls fail for a file of a time after January 2038.
enum class Narrow { Nobody, TheLibrary, Everybody };
Narrow narrow = Narrow::Nobody;

bool failsFor(const struct stat& status, const void* site) {
  const bool isAsked = narrow == Narrow::Everybody || (narrow == Narrow::TheLibrary && kit::isInLibrary(site));
  if (!isAsked || status.st_mtime <= INT_MAX) return false;
  errno = EOVERFLOW;
  return true;
}

void ageTo2040() {
  const timeval in2040{70L * 31'556'952, 0};
  const timeval times[] = {in2040, in2040};
  ASSERT_EQ(utimes(DBName, times), 0);
}

}  // namespace

extern "C" int fstat(int descriptor, struct stat* status) noexcept {
  KIT_REAL(fstat);
  return real(descriptor, status) != 0 || failsFor(*status, __builtin_return_address(0)) ? -1 : 0;
}

extern "C" int lstat(const char* name, struct stat* status) noexcept {
  KIT_REAL(lstat);
  return real(name, status) != 0 || failsFor(*status, __builtin_return_address(0)) ? -1 : 0;
}

TEST(ADatabaseOfALaterTime, IsReadWhereItsTimeFits) {
  Router router;
  house::fill(router.database());
  ageTo2040();
  EXPECT_EQ(house::countFound(router), house::kDevices);
}

TEST(ADatabaseOfALaterTime, IsNeitherRepairedNorDeletedWhereItsTimeDoesNotFit) {
  Router router;
  house::fill(router.database());
  const Bytes healthy = router.database().file();
  router.assoc();
  router.watch(kit::kWatchDatabase);
  for (const house::Reader& reader : house::kReaders) {
    SCOPED_TRACE(reader.name);
    ageTo2040();
    router.forget();
    narrow = Narrow::Everybody;
    EXPECT_EQ(reader.readNothing(router), reader.resultWithoutFile);
    narrow = Narrow::Nobody;
    EXPECT_EQ(router.takeTrace(), lines({"dpopen /tmp/ddb 6 -1 -> failed", "stderr dpopen: stat error"}));
    EXPECT_EQ(router.database().file(), healthy);
  }
  EXPECT_EQ(house::countFound(router), house::kDevices);
}

// Whoever cannot look at the file does not know that reading it ends.
TEST(ADatabaseOfALaterTime, IsNotReadWhereItCannotBeLookedAt) {
  Router router;
  router.connect();
  house::fillInOrder(router.database());
  depot::Words words(router.database().file());
  damages::leadIntoACircle(words, "20");
  damages::leadIntoACircle(words, "NextDevid");
  router.database().replaceWith(words.file());
  router.watch(kit::kWatchDatabase);
  for (const house::Reader& reader : house::kReaders) {
    SCOPED_TRACE(reader.name);
    ageTo2040();
    router.forget();
    narrow = Narrow::TheLibrary;
    EXPECT_EQ(reader.readNothing(router), reader.resultWithoutFile);
    narrow = Narrow::Nobody;
    EXPECT_EQ(router.takeTrace(), lines({"dpopen /tmp/ddb 6 -1", "dpclose", "stderr dpopen: stat error"}));
    EXPECT_EQ(router.database().file(), words.file());
  }
}
