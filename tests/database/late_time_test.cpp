// A database whose time a system with 32-bit times cannot tell: its status cannot be asked for then. That says nothing
// about the file, which is neither repaired nor deleted, nor read without a look at it.
#include <gtest/gtest.h>
#include <sys/time.h>
#include <tembra/globals.h>

#include "database/damages.h"
#include "file_status.h"
#include "house.h"
#include "readers.h"

using kit::Bytes;
using kit::lines;
using kit::Router;
using status::Narrow;

namespace {

void ageTo2040() {
  const timeval in2040{70LL * 31'556'952, 0};
  const timeval times[] = {in2040, in2040};
  ASSERT_EQ(utimes(DBName, times), 0);
}

}  // namespace

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
    status::narrow = Narrow::kEverybody;
    EXPECT_EQ(reader.readNothing(router), reader.resultWithoutFile);
    status::narrow = Narrow::kNobody;
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
    status::narrow = Narrow::kTheLibrary;
    EXPECT_EQ(reader.readNothing(router), reader.resultWithoutFile);
    status::narrow = Narrow::kNobody;
    EXPECT_EQ(router.takeTrace(), lines({"dpopen /tmp/ddb 6 -1", "dpclose", "stderr dpopen: stat error"}));
    EXPECT_EQ(router.database().file(), words.file());
  }
}
