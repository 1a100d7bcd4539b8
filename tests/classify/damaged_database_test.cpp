// Databases that do not open, or open and turn out to be broken.
#include <depot.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <tembra/globals.h>

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>

#include "kit/router.h"

using kit::Bytes;
using kit::Call;
using kit::Database;
using kit::Device;
using kit::lines;
using kit::Router;

namespace {

constexpr int kDevices = 20;
constexpr std::size_t kHeader = 48;

// Devices 1 to 20 with nodes of the same numbers, in this order.
void fill(Database& database) {
  for (int id = 1; id <= kDevices; ++id) {
    database.put(Device(id, "Lamp " + std::to_string(id)).zwave(static_cast<unsigned>(id)));
  }
}

void changeFile(Database& database, std::size_t offset, unsigned char byte) {
  Bytes content = database.file();
  content.at(offset) = byte;
  database.replaceWith(content);
}

int findNode(Router& router, int node) {
  router.assoc().zwNodeRx.nodeId = static_cast<unsigned char>(node);
  return router.assoc().ZW_checkNodeExists();
}

const std::string kOpened = lines({"dpopen /tmp/ddb 6 -1", "dpclose"});
const std::string kRepaired = lines({"dpopen /tmp/ddb 6 -1 -> failed", "stderr dpopen: broken database file",
                                     "dprepair /tmp/ddb", "dpopen /tmp/ddb 70 1", "dpclose"});
const std::string kSavedInPart = lines({"dpopen /tmp/ddb 6 -1 -> failed", "stderr dpopen: broken database file",
                                        "dprepair /tmp/ddb -> failed", "dpopen /tmp/ddb 70 1", "dpclose"});
const std::string kGivenUp = lines({"dpopen /tmp/ddb 6 -1 -> failed", "stderr dpopen: broken database file",
                                    "dprepair /tmp/ddb -> failed", "dpopen /tmp/ddb 70 1 -> failed"});
const std::string kEndedEarly =
    lines({"dpopen /tmp/ddb 6 -1", "dpclose -> failed", "stderr dpclose: with fatal error"});

struct Damage {
  const char* name;
  void (*cause)(Database&);
  std::string trace;  // of a look-up that finds nothing
  bool exists;        // whether there is a file afterwards
  int devices;        // how many of the devices are found afterwards
  friend std::ostream& operator<<(std::ostream& stream, const Damage& damage) { return stream << damage.name; }
};

class DamagedDatabase : public testing::TestWithParam<Damage> {};

INSTANTIATE_TEST_SUITE_P(
    Is, DamagedDatabase,
    testing::Values(
        Damage{"Missing", [](Database& database) { database.remove(); }, kOpened, true, 0},
        Damage{"Empty", [](Database& database) { database.replaceWith({}); }, kOpened, true, 0},
        Damage{"OneByteLonger", [](Database& database) { database.makeRepairable(); }, kRepaired, true, kDevices},
        Damage{"WithoutMagic", [](Database& database) { changeFile(database, 1, 'x'); }, kRepaired, true, kDevices},
        Damage{"OneByte", [](Database& database) { database.makeUnopenable(); }, kGivenUp, false, 0},
        Damage{"Rubbish", [](Database& database) { database.replaceWith(Bytes(5000, 'x')); }, kRepaired, true, 0},
        Damage{"CutInItsHeader", [](Database& database) { database.cutTo(kHeader / 2); }, kGivenUp, false, 0},
        Damage{"CutInItsBuckets", [](Database& database) { database.cutTo(kHeader + 100); }, kRepaired, true, 0},
        Damage{"CutInItsLastRecord", [](Database& database) { database.cutTo(database.file().size() - 100); },
               kSavedInPart, true, kDevices - 1},
        Damage{"BrokenInARecord", [](Database& database) { database.breakRecord("8"); }, kEndedEarly, true, 7},
        Damage{"WithoutValues", [](Database& database) { database.breakEveryValue(); }, kOpened, true, 0}),
    [](const auto& tested) { return tested.param.name; });

}  // namespace

TEST_P(DamagedDatabase, IsOpenedRepairedOrDeleted) {
  Router router;
  fill(router.database());
  GetParam().cause(router.database());
  router.watch(kit::kWatchDatabase);
  EXPECT_EQ(findNode(router, 99), 0);
  EXPECT_EQ(router.takeTrace(), GetParam().trace);
  EXPECT_EQ(router.database().exists(), GetParam().exists);
}

TEST_P(DamagedDatabase, KeepsWhatCanBeRead) {
  Router router;
  fill(router.database());
  GetParam().cause(router.database());
  int found = 0;
  for (int node = 1; node <= kDevices; ++node) found += findNode(router, node);
  EXPECT_EQ(found, GetParam().devices);
}

TEST_P(DamagedDatabase, IsNoReasonForARemovalToFail) {
  Router router;
  fill(router.database());
  GetParam().cause(router.database());
  TembraAssociation& assoc = router.connect();
  assoc.zwNodeRx.nodeId = 1;
  EXPECT_EQ(assoc.ZW_removeNode(), 0);
  EXPECT_EQ(router.takeSends().size(), GetParam().devices > 0 ? 1U : 0U);
}

namespace {

const std::string kNotOpened = lines({"dpopen /tmp/ddb 6 -1 -> failed", "stderr dpopen: open error",
                                      "dprepair /tmp/ddb -> failed", "dpopen /tmp/ddb 70 1 -> failed"});

}  // namespace

TEST(UnopenableDatabase, AnEmptyDirectoryIsDeleted) {
  Router router;
  router.database().makeDirectory();
  router.watch(kit::kWatchDatabase);
  EXPECT_EQ(router.assoc().ZW_removeNode(), 0);
  EXPECT_EQ(router.takeTrace(), kNotOpened);
  EXPECT_FALSE(router.database().exists());
}

TEST(UnopenableDatabase, ADirectoryWithAFileStays) {
  Router router;
  router.database().makeDirectory();
  std::ofstream("/tmp/ddb/file") << "x";
  router.watch(kit::kWatchDatabase);
  EXPECT_EQ(router.assoc().ZW_removeNode(), -1) << "what deleting it gave";
  EXPECT_EQ(router.takeTrace(), kNotOpened);
  EXPECT_EQ(findNode(router, 1), 0);
  EXPECT_EQ(router.assoc().calculateDevId(), -1);
  EXPECT_TRUE(router.database().exists());
}

TEST(UnopenableDatabase, APathThatIsNotThereHasNothingToDelete) {
  Router router;
  std::strcpy(DBName, "/tmp/no/d");
  EXPECT_EQ(router.assoc().ZW_removeNode(), -1);
  EXPECT_EQ(findNode(router, 1), 0);
  EXPECT_EQ(router.takeTrace(), lines({"stderr dpopen: open error", "stderr dpopen: open error"}));
}

TEST(UnopenableDatabase, OnlyTheFirstFailureIsTold) {
  Router router;
  fill(router.database());
  router.watch(kit::kWatchDatabase);
  router.fail(Call::OpenDatabase, DP_ELOCK, 2);
  EXPECT_EQ(findNode(router, 1), 0);
  EXPECT_EQ(router.takeTrace(), lines({
                                    "dpopen /tmp/ddb 6 -1 -> failed",
                                    "stderr dpopen: lock error",
                                    "dprepair /tmp/ddb",
                                    "dpopen /tmp/ddb 70 1 -> failed",
                                }));
  EXPECT_FALSE(router.database().exists());
}

TEST(UnopenableDatabase, WhatRepairSaysDoesNotCount) {
  Router router;
  fill(router.database());
  router.watch(kit::kWatchDatabase);
  router.fail(Call::OpenDatabase, DP_ECLOSE);
  router.fail(Call::RepairDatabase, DP_EMISC);
  EXPECT_EQ(findNode(router, 20), 1);
  EXPECT_EQ(router.takeTrace(), lines({
                                    "dpopen /tmp/ddb 6 -1 -> failed",
                                    "stderr dpopen: close error",
                                    "dprepair /tmp/ddb -> failed",
                                    "dpopen /tmp/ddb 70 1",
                                    "log 0 libTembraAssoc:Removing Zwave device 20",
                                    "dpclose",
                                }));
}

TEST(UnopenableDatabase, ServiceGoesOnOnceDescriptorsAreFreeAgain) {
  Router router;
  router.assoc();
  rlimit limit{};
  ASSERT_EQ(getrlimit(RLIMIT_NOFILE, &limit), 0);
  const rlimit none{3, limit.rlim_max};
  ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &none), 0);
  const int id = router.assoc().calculateDevId();
  ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &limit), 0);
  EXPECT_EQ(id, -1);
  EXPECT_EQ(router.takeTrace(), lines({"stderr dpopen: open error"}));
  router.database().nextId("17");
  EXPECT_EQ(router.assoc().calculateDevId(), 17);
}

namespace {

// How many keys a walk goes past when a word of the eighth record's header is wrong.
long keysOfAWalk(Router& router, std::size_t word, unsigned value) {
  router.database().remove();
  fill(router.database());
  router.database().overwriteInRecord("8", word, value);
  router.forget();
  EXPECT_EQ(findNode(router, 99), 0);
  const std::string trace = router.takeTrace();
  return std::count(trace.begin(), trace.end(), '\n') / 2;  // two lines a key
}

}  // namespace

// Sizes that make the place of the next record overflow: the walk turns back, and would go round for ever.
TEST(BrokenRecord, DoesNotKeepTheWalkGoingRound) {
  constexpr std::size_t kWords[] = {12, 16};  // the sizes of the value and of the padding
  constexpr unsigned kValues[] = {0x7FFFFFFF, 0x7FFFFFF0, 0x7FFFFF00, 0x7FFFFE00, 0x7FFFFDE0,
                                  0x7FFF0000, 0x40000000, 0x80000000, 0xFFFFFFFF};
  Router router;
  fill(router.database());
  const auto mostKeys = static_cast<long>(router.database().file().size() / 28);
  router.watch(kit::kWatchRecords);
  int ended = 0;
  for (const std::size_t word : kWords) {
    for (const unsigned value : kValues) ended += keysOfAWalk(router, word, value) <= mostKeys + 1 ? 1 : 0;
  }
  EXPECT_EQ(ended, 18);
}

TEST(BrokenRecord, IsTheLastOneThatTheWalkSees) {
  Router router;
  fill(router.database());
  router.database().breakRecord("8");
  router.watch(kit::kWatchDatabase | kit::kWatchRecords);
  EXPECT_EQ(findNode(router, 20), 0);
  const std::string trace = router.takeTrace();
  EXPECT_NE(trace.find("dpiternext 7\n"), std::string::npos);
  EXPECT_EQ(trace.find("dpiternext 9\n"), std::string::npos);
  EXPECT_NE(trace.find("dpclose"), std::string::npos);
}

// A key with a zero byte inside is found by the walk, but not by its text.
TEST(BrokenRecord, AValueThatCannotBeFetchedEndsTheWalkEvenIfItsKeyIsNoDevices) {
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
