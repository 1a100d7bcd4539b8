// The id of the next device, from the database that the HA server keeps.
#include <depot.h>
#include <gtest/gtest.h>
#include <tembra/globals.h>

#include <cstring>
#include <string>

#include "kit/router.h"

using kit::Call;
using kit::lines;
using kit::Router;

TEST(DeviceIdTest, IsTheNumberThatTheTextBeginsWith) {
  const struct {
    std::string text;
    int id;
  } rows[] = {
      {"17", 17},
      {"0", 0},
      {"2147483647", 2147483647},
      {"-3", -3},
      {" 42", 42},
      {"12abc", 12},
      {"abc", 0},
      {"", 0},
      {std::string("4\0005", 3), 4},
      {"0000000000", 0},
      {"00000000123", 12},  // ten characters are read
      {"1234567890123", 1234567890},
  };
  Router router;
  int checked = 0;
  for (const auto& row : rows) {
    router.database().nextId(row.text);
    DevId = 99;
    EXPECT_EQ(router.assoc().calculateDevId(), row.id) << row.text;
    EXPECT_EQ(DevId, row.id) << row.text;
    ++checked;
  }
  EXPECT_EQ(checked, 12);
}

TEST(DeviceIdTest, IsReadAndNotTaken) {
  Router router;
  router.database().nextId("17");
  const kit::Bytes before = router.database().file();
  EXPECT_EQ(router.assoc().calculateDevId(), 17);
  EXPECT_EQ(router.assoc().calculateDevId(), 17);
  EXPECT_EQ(router.database().file(), before);
}

TEST(DeviceIdTest, StaysWhereTheDatabaseHasNone) {
  Router router;
  router.database().create().put("NextDevId", std::string("8")).put("nextdevid", std::string("9"));
  EXPECT_EQ(router.assoc().calculateDevId(), 0);
  DevId = 12;
  EXPECT_EQ(router.assoc().calculateDevId(), 12);
  EXPECT_EQ(DevId, 12);
}

TEST(DeviceIdTest, IsMinusOneWithoutADatabaseAndStoredByNobody) {
  Router router;
  router.database().nextId("17");
  router.database().makeUnopenable();
  DevId = 12;
  EXPECT_EQ(router.assoc().calculateDevId(), -1);
  EXPECT_EQ(DevId, 12);
}

TEST(DeviceIdTest, IsReadInOneShortSession) {
  Router router;
  router.database().nextId("17");
  router.watch(kit::kWatchDatabase | kit::kWatchRecords);
  router.assoc().calculateDevId();
  EXPECT_EQ(router.takeTrace(), lines({
                                    "dpopen /tmp/ddb 6 -1",
                                    "dpget NextDevid length -1 from 0 most 10",
                                    "dpclose",
                                }));
}

TEST(DeviceIdTest, AFailedCloseIsToldAndChangesNothing) {
  Router router;
  router.database().nextId("17");
  router.fail(Call::kCloseDatabase, DP_ECLOSE);
  EXPECT_EQ(router.assoc().calculateDevId(), 17);
  EXPECT_EQ(router.takeTrace(), lines({"stderr dpclose: close error"}));
}

TEST(DeviceIdTest, TheDatabaseMayBeElsewhere) {
  Router router;
  router.database().nextId("17");
  std::strcpy(DBName, "/tmp/else");
  router.database().nextId("18");
  router.database().makeRepairable();
  router.watch(kit::kWatchDatabase);
  EXPECT_EQ(router.assoc().calculateDevId(), 18);
  router.database().makeUnopenable();
  EXPECT_EQ(router.assoc().calculateDevId(), -1);
  EXPECT_FALSE(router.database().exists());
  EXPECT_EQ(router.takeTrace(), lines({
                                    "dpopen /tmp/else 6 -1 -> failed",
                                    "stderr dpopen: broken database file",
                                    "dprepair /tmp/else",
                                    "dpopen /tmp/else 70 1",
                                    "dpclose",
                                    "dpopen /tmp/else 6 -1 -> failed",
                                    "stderr dpopen: broken database file",
                                    "dprepair /tmp/else -> failed",
                                    "dpopen /tmp/else 70 1 -> failed",
                                }));
}
