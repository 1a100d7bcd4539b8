// What stands in the database's place and is no database, and what failing calls come to.
#include <depot.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <tembra/globals.h>

#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>

#include "house.h"
#include "kit/router.h"

using house::findNode;
using kit::Call;
using kit::Device;
using kit::lines;
using kit::Router;

namespace {

const std::string kOpened = lines({"dpopen /tmp/ddb 6 -1", "dpclose"});
const std::string kNotOpened = lines({"dpopen /tmp/ddb 6 -1 -> failed", "stderr dpopen: open error",
                                      "dprepair /tmp/ddb -> failed", "dpopen /tmp/ddb 70 1 -> failed"});
const std::string kNoFile = lines({"dpopen /tmp/ddb 6 -1 -> failed", "stderr dpopen: stat error",
                                   "dprepair /tmp/ddb -> failed", "dpopen /tmp/ddb 70 1 -> failed"});

struct Place {
  const char* name;
  void (*take)(kit::Database&);
  std::string trace;
  int removal;  // what it returns
  bool isLeft;
};

// Opening a pipe for reading would wait for somebody who writes.
const Place kPlaces[] = {
    {"nothing", [](kit::Database& database) { database.remove(); }, kOpened, 0, true},
    {"an empty file", [](kit::Database& database) { database.replaceWith({}); }, kOpened, 0, true},
    {"a pipe", [](kit::Database&) { mkfifo(DBName, S_IRUSR | S_IWUSR); }, kNoFile, 0, false},
    {"an empty folder", [](kit::Database& database) { database.makeDirectory(); }, kNotOpened, 0, false},
    {"a folder with a file",
     [](kit::Database& database) {
       database.makeDirectory();
       std::ofstream("/tmp/ddb/file") << "x";
     },
     kNotOpened, -1, true},
};

void putLamp(Router& router) { router.database().put(Device(20, "Lamp").zwave(20).zigbee(7)); }

}  // namespace

TEST(InTheDatabasesPlace, WhatIsNoFileIsDeletedWhereItCanBe) {
  Router router;
  router.assoc();
  router.watch(kit::kWatchDatabase);
  for (const Place& place : kPlaces) {
    SCOPED_TRACE(place.name);
    std::filesystem::remove_all(DBName);
    place.take(router.database());
    router.forget();
    EXPECT_EQ(router.assoc().ZW_removeNode(), place.removal);
    EXPECT_EQ(router.takeTrace(), place.trace);
    EXPECT_EQ(router.database().exists(), place.isLeft);
  }
}

TEST(InTheDatabasesPlace, APathThatIsNotThereHasNothingToDelete) {
  Router router;
  std::strcpy(DBName, "/tmp/no/d");
  EXPECT_EQ(router.assoc().ZW_removeNode(), -1);
  EXPECT_EQ(findNode(router, 1), 0);
  EXPECT_EQ(router.assoc().calculateDevId(), -1);
  EXPECT_EQ(router.takeTrace(),
            lines({"stderr dpopen: open error", "stderr dpopen: open error", "stderr dpopen: open error"}));
}

// Neither lookup touches what it would have filled in; deleting gives the result.
TEST(ADatabaseBeyondRepair, LeavesWhatARemovalWouldHaveFilledIn) {
  Router router;
  router.database().makeUnopenable();
  TembraAssociation& assoc = router.assoc();
  assoc.zbDevice.msgCode = 77;
  std::strcpy(assoc.removedName, "nobody");
  std::strcpy(username1[0], "kept");
  EXPECT_EQ(assoc.zb_removeNode(7), 0);
  EXPECT_EQ(assoc.zbDevice.msgCode, 77);
  EXPECT_STREQ(assoc.removedName, "nobody");
  router.database().makeUnopenable();
  EXPECT_EQ(assoc.Hue_getBridgeList(), nullptr);
  EXPECT_STREQ(username1[0], "kept");
}

TEST(AFailingCall, OfASecondOpenIsNotTold) {
  Router router;
  putLamp(router);
  router.watch(kit::kWatchDatabase);
  router.fail(Call::kOpenDatabase, DP_ELOCK, 2);
  EXPECT_EQ(findNode(router, 1), 0);
  EXPECT_EQ(router.takeTrace(), lines({"dpopen /tmp/ddb 6 -1 -> failed", "stderr dpopen: lock error",
                                       "dprepair /tmp/ddb", "dpopen /tmp/ddb 70 1 -> failed"}));
  EXPECT_FALSE(router.database().exists());
}

TEST(AFailingCall, OfTheRepairDoesNotCount) {
  Router router;
  putLamp(router);
  router.watch(kit::kWatchDatabase);
  router.fail(Call::kOpenDatabase, DP_ECLOSE);
  router.fail(Call::kRepairDatabase, DP_EMISC);
  EXPECT_EQ(router.assoc().zb_removeNode(7), 0);
  EXPECT_EQ(router.takeTrace(),
            lines({"dpopen /tmp/ddb 6 -1 -> failed", "stderr dpopen: close error", "dprepair /tmp/ddb -> failed",
                   "dpopen /tmp/ddb 70 1", "log 0 libTembraAssoc:Removing zigbee device 0x07", "dpclose"}));
}

TEST(AFailingCall, OfTheWalkOrTheCloseIsPrintedOnly) {
  Router router;
  putLamp(router);
  router.fail(Call::kIterateDatabase, DP_EREAD);
  router.fail(Call::kCloseDatabase, DP_ECLOSE);
  EXPECT_EQ(router.assoc().zb_removeNode(7), 0);
  EXPECT_EQ(router.takeTrace(),
            lines({"stderr dpiterinit: read error", "log 0 libTembraAssoc:Removing zigbee device 0x07",
                   "stderr dpclose: close error"}));
}

// A key with a zero byte inside is found by the walk, but not by its text.
TEST(AValueThatCannotBeRead, EndsTheWalkEvenIfItsKeyIsNoDevices) {
  Router router;
  router.database().put(Device(1, "Lamp").zwave(1)).put(std::string("1.2\0x", 5), std::string("y"));
  router.database().put(Device(2, "Lamp").zwave(2));
  router.watch(kit::kWatchDatabase | kit::kWatchRecords);
  EXPECT_EQ(findNode(router, 2), 0);
  EXPECT_EQ(router.takeTrace(), lines({
                                    "dpopen /tmp/ddb 6 -1",
                                    "dpiterinit",
                                    "dpiternext 1",
                                    "dpget 1 length -1 from 0 most 512",
                                    "dpiternext 1.2",
                                    "dpget 1.2 length -1 from 0 most 512 -> failed",
                                    "dpclose",
                                }));
}
