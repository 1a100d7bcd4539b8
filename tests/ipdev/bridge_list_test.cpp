// The list of known Hue bridges, over what the database may hold.
#include <gtest/gtest.h>

#include <cstring>
#include <functional>

#include "hue_devices.h"
#include "kit/router_test.h"

using kit::Bytes;
using kit::Database;
using kit::Device;
using kit::lines;
using kit::Router;

namespace {

using BridgeListTest = kit::RouterTest;

using Fill = std::function<void(Database&)>;
using Elements = std::vector<std::pair<std::string, std::string>>;

struct Case {
  const char* name;
  Fill fill;
  Elements elements;
};

void expectLists(Router& router, const std::vector<Case>& cases) {
  for (const Case& row : cases) {
    std::memset(username1, 0, sizeof username1);
    router.database().remove();
    row.fill(router.database().create());
    EXPECT_EQ(bridgeListOf(router.assoc()), listOf(row.elements)) << row.name;
  }
}

const std::string kA = bridgeIdOf(1);
const std::string kB = bridgeIdOf(2);
const std::string kC = bridgeIdOf(3);
const std::string kMacA = macOf(1);
const std::string kMacB = macOf(2);
const std::string kMacC = macOf(3);

// Devices with the ids 1, 2, ... in this order.
using Lamp = std::pair<OptionalText, OptionalText>;
Fill lamps(const std::vector<Lamp>& each) {
  return [each](Database& database) {
    int id = 0;
    for (const auto& [bridge, user] : each) putLamp(database, ++id, bridge, user);
  };
}

Bytes indexRecord(const std::string& value, std::size_t size) {
  Bytes record(34, 'x');
  record.insert(record.end(), value.begin(), value.end());
  record.resize(size);
  return record;
}

}  // namespace

TEST_F(BridgeListTest, LampsAndSwitchesOnBridges) {
  expectLists(router,
              {
                  {"nothing", [](Database&) {}, {}},
                  {"one lamp", lamps({{kA, "ann"}}), {{kMacA, "ann"}}},
                  {"one switch", [](Database& database) { putWallSwitch(database, 7, kA, "ann"); }, {{kMacA, "ann"}}},
                  {"two lamps on one bridge", lamps({{kA, "ann"}, {kA, "ann"}}), {{kMacA, "ann"}}},
                  {"two bridges", lamps({{kA, "ann"}, {kB, "bob"}}), {{kMacA, "ann"}, {kMacB, "bob"}}},
                  {"three lamps each on two bridges",
                   lamps({{kA, "ann"}, {kA, "ann"}, {kA, "ann"}, {kB, "bob"}, {kB, "bob"}, {kB, "bob"}}),
                   {{kMacA, "ann"}, {kMacB, "bob"}}},
                  {"a switch and a lamp on one bridge",
                   [](Database& database) {
                     putWallSwitch(database, 1, kA, "ann");
                     putLamp(database, 2, kA, "ann");
                   },
                   {{kMacA, "ann"}}},
                  {"a user with every kind of character", lamps({{kA, "-a%sZ9\"\\{}"}}), {{kMacA, "-a%sZ9\"\\{}"}}},
              });
}

TEST_F(BridgeListTest, OnlyTheEntryBeforeIsCompared) {
  expectLists(router, {
                          {"bridges in turn",
                           lamps({{kA, "ann"}, {kB, "bob"}, {kA, "ann"}}),
                           {{kMacA, "ann"}, {kMacB, "bob"}, {kMacA, "ann"}}},
                          {"a new bridge with a known user is overwritten by the next",
                           lamps({{kA, "ann"}, {kB, "ann"}, {kC, "bob"}}),
                           {{kMacA, "ann"}, {kMacC, "bob"}}},
                          {"a new bridge with a known user is listed when it is the last",
                           lamps({{kA, "ann"}, {kB, "ann"}}),
                           {{kMacA, "ann"}, {kMacB, ""}}},
                          {"a known bridge with a new user leaves a hole, where the list ends",
                           lamps({{kA, "ann"}, {kA, "bob"}, {kB, "cid"}}),
                           {{kMacA, "ann"}}},
                          {"a user that is a part of the one before is the same",
                           lamps({{kA, "annabel"}, {kB, "nab"}, {kC, "cid"}}),
                           {{kMacA, "annabel"}, {kMacC, "cid"}}},
                          {"a user that continues the one before is another",
                           lamps({{kA, "ann"}, {kA, "annabel"}, {kB, "cid"}}),
                           {{kMacA, "ann"}}},
                          {"a part of the bridge before is the same",
                           lamps({{kA, "ann"}, {"a1b2", "bob"}, {kB, "cid"}}),
                           {{kMacA, "ann"}}},
                      });
}

TEST_F(BridgeListTest, MissingAndEmptyValues) {
  expectLists(router,
              {
                  {"no user", lamps({{kA, {}}}), {{kMacA, ""}}},
                  {"no user, then another bridge", lamps({{kA, {}}, {kB, "bob"}}), {{kMacB, "bob"}}},
                  {"a user, then a bridge without one", lamps({{kA, "ann"}, {kB, {}}}), {{kMacA, "ann"}, {kMacB, ""}}},
                  {"no bridge", lamps({{{}, "ann"}}), {}},
                  {"no bridge, then one", lamps({{{}, "ann"}, {kB, "bob"}}), {}},
                  {"a bridge, then none", lamps({{kA, "ann"}, {{}, "bob"}, {kC, "cid"}}), {{kMacA, "ann"}}},
                  {"neither", lamps({{{}, {}}, {kA, "ann"}}), {{kMacA, "ann"}}},
                  {"an empty bridge at first", lamps({{"", "ann"}, {kB, "bob"}}), {}},
                  {"an empty bridge later is the same",
                   lamps({{kA, "ann"}, {"", "ann"}, {kB, "bob"}}),
                   {{kMacA, "ann"}, {kMacB, "bob"}}},
                  {"an empty user at first is one", lamps({{kA, ""}, {kB, "bob"}}), {{kMacA, ""}, {kMacB, "bob"}}},
                  {"an empty user later is the same",
                   lamps({{kA, "ann"}, {kA, ""}, {kB, "bob"}}),
                   {{kMacA, "ann"}, {kMacB, "bob"}}},
              });
}

TEST_F(BridgeListTest, OtherRecordsDoNotDisturb) {
  const auto fill = [](Database& database) {
    putSpeaker(database, 4);
    database.nextId("17").put("Version", "3").index(4, 1, kC).index(4, 9, "cid");
    putLamp(database, 5, kA, "ann");
    putSpeaker(database, 6);
    database.index(6, 1, kC).index(6, 9, "cid");
    database.put(Device(7, "Plug").zwave(5).type("HueLamp")).index(7, 1, kC).index(7, 9, "cid");
    database.put(Device(8, "Door").zigbee(5).type("HueLamp")).index(8, 1, kC).index(8, 9, "cid");
    database.put("9.7", Device(9, "Lamp").ip().type("HueLamp").bytes()).index(9, 1, kC).index(9, 9, "cid");
    putLamp(database, 10, kB, "bob");
    putSpeaker(database, 11);
    putWallSwitch(database, 12, kC, "dan");
    database.index(12, 1, kA).index(12, 9, "ann").index(10, 3, kC).index(10, 5, "cid");
    putSpeaker(database, 13);
  };
  expectLists(router, {{"", fill, {{kMacA, "ann"}, {kMacB, "bob"}, {kMacC, "dan"}}}});
}

TEST_F(BridgeListTest, TypeNamesAreComparedWhole) {
  for (const char* type : {"", "HueLam", "HueLamp2", "huelamp", "Hue Lamp", "MultilevelSwitch", "MultilevelSwitchOn"}) {
    const auto fill = [type](Database& database) {
      database.put(Device(1, "?").ip().type(type));
      for (const int number : {1, 3}) database.index(1, number, kA);
      for (const int number : {5, 9}) database.index(1, number, "ann");
    };
    expectLists(router, {{type, fill, {}}});
  }
}

TEST_F(BridgeListTest, TheIndexesBelongToTheIdInTheRecord) {
  const auto keyed = [](int id) {
    return [id](Database& database) {
      database.put("77", Device(id, "Lamp").ip().type("HueLamp").bytes());
      database.index(id, 1, kA).index(id, 9, "ann").index(77, 1, kB).index(77, 9, "bob");
    };
  };
  expectLists(router, {{"another id than the key", keyed(12), {{kMacA, "ann"}}},
                       {"a negative id", keyed(-5), {{kMacA, "ann"}}},
                       {"the greatest id", keyed(2147483647), {{kMacA, "ann"}}},
                       {"the least id", keyed(-2147483647 - 1), {{kMacA, "ann"}}}});
}

TEST_F(BridgeListTest, ShortRecords) {
  const auto lampOf = [](std::size_t length) {
    return [length](Database& database) {
      database.put(Device(1, "Lamp").ip().type("HueLamp").cutTo(length)).index(1, 1, kA).index(1, 9, "ann");
    };
  };
  for (const std::size_t length : {0U, 1U, 3U, 4U, 399U, 400U, 403U, 404U, 439U, 440U, 441U, 446U}) {
    expectLists(router, {{"too short for its type", lampOf(length), {}}});
  }
  for (const std::size_t length : {447U, 448U, 511U, 512U}) {
    expectLists(router, {{"long enough", lampOf(length), {{kMacA, "ann"}}}});
  }
  for (const std::size_t length : {0U, 1U, 33U, 34U}) {
    const auto fill = [length](Database& database) {
      putLamp(database, 1, kA, {});
      database.put("1.9", indexRecord("", 34 + 8));
      database.put("1.9", Bytes(length, 'x'));
    };
    expectLists(router, {{"a user without a value", fill, {{kMacA, ""}}}});
  }
  const auto cut = [](Database& database) {
    database.put(Device(1, "Lamp").ip().type("HueLamp"));
    database.put("1.1", indexRecord(kA, 34 + kA.size())).put("1.9", indexRecord("ann", 34 + 3));
  };
  expectLists(router, {{"values without a NUL", cut, {{kMacA, "ann"}}}});
}

TEST_F(BridgeListTest, LongValuesAreCut) {
  const std::string full(58, 'u');
  const auto fill = [&full](Database& database) {
    database.put(Device(1, "Lamp").ip().type("HueLamp"));
    database.put("1.1", indexRecord(kA + std::string(42, 'x'), 92)).put("1.9", indexRecord(full, 92));
    putLamp(database, 2, kB, "bob");
    database.put(Device(3, "Lamp").ip().type("HueLamp"));
    database.put("3.1", indexRecord(kC + std::string(900, 'x'), 950)).put("3.9", indexRecord(full + full, 150));
  };
  const std::string cut(49, 'u');
  expectLists(router, {{"", fill, {{kMacA, cut}, {kMacB, "bob"}, {kMacC, cut}}}});
}

// However long a user name is: two lamps on one bridge with the same user are one element, and the next bridge is
// another.
TEST_F(BridgeListTest, ALongUserIsRecognisedAgain) {
  for (const std::size_t length : {48U, 49U, 50U, 57U, 58U}) {
    const std::string user(length, 'u');
    expectLists(router,
                {{"", lamps({{kA, user}, {kA, user}, {kB, "bob"}}), {{kMacA, user.substr(0, 49)}, {kMacB, "bob"}}}});
  }
}

TEST_F(BridgeListTest, MoreBridgesThanTheListHolds) {
  for (const int count : {19, 20, 21, 25, 60}) {
    const auto fill = [count](Database& database) {
      for (int n = 1; n <= count; ++n) putLamp(database, n, bridgeIdOf(n), "user" + std::to_string(n) + ".");
    };
    Elements elements;
    for (int n = 1; n <= std::min(count, 20); ++n) elements.emplace_back(macOf(n), "user" + std::to_string(n) + ".");
    expectLists(router, {{"", fill, elements}});
  }
}

TEST_F(BridgeListTest, TheLongestListFits) {
  const auto user = [](int n) { return std::string(47, '"') + std::to_string(n + 10); };
  const auto fill = [&user](Database& database) {
    for (int n = 1; n <= 30; ++n) putLamp(database, n, bridgeIdOf(n), user(n));
  };
  Elements elements;
  for (int n = 1; n <= 20; ++n) elements.emplace_back(macOf(n), user(n));
  expectLists(router, {{"", fill, elements}});
}

TEST_F(BridgeListTest, MoreUsersThanTheTableHolds) {
  for (int n = 1; n <= 60; ++n) putLamp(router.database(), n, kA, "user" + std::to_string(n) + ".");
  std::memset(username1, '~', sizeof username1);
  EXPECT_EQ(bridgeListOf(router.assoc()), listOf({{kMacA, "user1."}}));
  for (int n = 1; n <= 20; ++n) EXPECT_EQ(std::string(username1[n - 1]), "user" + std::to_string(n) + ".");
  for (int n = 21; n <= 50; ++n) EXPECT_EQ(std::string(username1[n - 1], 50), std::string(50, '~')) << n;
}

TEST_F(BridgeListTest, OldUsersShowUpAgain) {
  TembraAssociation& assoc = router.assoc();
  putLamp(router.database(), 1, kA, "ann");
  putLamp(router.database(), 2, kB, "bob");
  EXPECT_EQ(bridgeListOf(assoc), listOf({{kMacA, "ann"}, {kMacB, "bob"}}));
  router.database().drop("1.9").drop("2.9");
  EXPECT_EQ(bridgeListOf(assoc), listOf({{kMacB, "ann"}})) << "the second bridge overwrites the first";
  router.database().drop("1").drop("1.1").index(2, 9, "cid");
  EXPECT_EQ(bridgeListOf(assoc), listOf({{kMacB, "cid"}}));
  EXPECT_STREQ(username1[0], "cid");
  EXPECT_STREQ(username1[1], "bob") << "the table is never cleared";
}

TEST_F(BridgeListTest, NothingElseIsTouched) {
  TembraAssociation& assoc = router.connect();
  putLamp(router.database(), 1, kA, "ann");
  const std::string state = router.state();
  const Bytes file = router.database().file();
  std::strcpy(tempStr, "untouched");
  router.watch(kit::kWatchDatabase);
  EXPECT_EQ(bridgeListOf(assoc), listOf({{kMacA, "ann"}}));
  EXPECT_EQ(router.takeTrace(), lines({"dpopen /tmp/ddb 6 -1", "dpclose"}));
  EXPECT_EQ(router.state(), state);
  EXPECT_STREQ(tempStr, "untouched");
  EXPECT_EQ(router.database().records(), 3);
  EXPECT_EQ(router.database().file().size(), file.size());
}
