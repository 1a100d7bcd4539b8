// Answers of the Hue server that list the bridges found.
#include <gtest/gtest.h>

#include <climits>
#include <string>

#include "kit/router_test.h"
#include "wire.h"

using kit::Bytes;
using kit::lines;
using kit::Router;

namespace {

using HueBridgesTest = kit::ConnectedTest;

std::string twoDigits(int number) {
  return {static_cast<char>('0' + number / 10), static_cast<char>('0' + number % 10)};
}

std::string entry(const std::string& id, const std::string& address) {
  return R"({"id":")" + id + R"(","internalipaddress":")" + address + R"("})";
}

// Bridge n of a well-formed answer, and its slot.
std::string goodEntry(int n) { return entry("a1b2c3fffe0a1b" + twoDigits(n), "192.168.100.1" + twoDigits(n)); }
Slot goodSlot(int n) { return {"a1:b2:c3:0a:1b:" + twoDigits(n), "192.168.100.1" + twoDigits(n)}; }

std::vector<std::string> goodEntries(int count) {
  std::vector<std::string> entries;
  entries.reserve(static_cast<std::size_t>(count));
  for (int n = 0; n < count; ++n) entries.push_back(goodEntry(n));
  return entries;
}

std::vector<Slot> goodSlots(int count) {
  std::vector<Slot> slots;
  slots.reserve(static_cast<std::size_t>(count));
  for (int n = 0; n < count; ++n) slots.push_back(goodSlot(n));
  return slots;
}

// Sends an answer with these entries and gives the whole payload of its event.
Bytes payloadFor(Router& router, int count, const std::vector<std::string>& entries) {
  router.hue().send(hueAnswer(0, count, entries));
  EXPECT_EQ(router.takeTrace(), lines({"event 21 source 3"}));
  return payloadOf(router.takeEvents().at(0));
}

Bytes payloadFor(Router& router, const std::vector<std::string>& entries) {
  return payloadFor(router, static_cast<int>(entries.size()), entries);
}

constexpr std::size_t kEntrySize = 65;

}  // namespace

TEST_F(HueBridgesTest, AtMostTwentyFiveSlotsAreFilled) {
  const struct {
    int count;
    int slots;
  } cases[] = {{0, 0},   {1, 1},   {2, 2},        {24, 24}, {25, 25}, {26, 25},
               {30, 25}, {50, 25}, {INT_MAX, 25}, {-1, 0},  {-25, 0}, {INT_MIN, 0}};
  for (const auto& row : cases) {
    EXPECT_EQ(payloadFor(router, row.count, goodEntries(50)), payloadOf(bridgeList(goodSlots(row.slots)))) << row.count;
  }
}

TEST_F(HueBridgesTest, WhatTheAnswerLacksRepeatsTheEntryBefore) {
  const Slot none{"", ""};
  const Slot first = goodSlot(1);
  const Slot second = goodSlot(2);
  const struct {
    const char* name;
    std::vector<std::string> entries;
    std::vector<Slot> slots;
  } cases[] = {
      {"no object after a good one", {goodEntry(1), "rubbish", goodEntry(2)}, {first, first, second}},
      {"no object at first", {"rubbish", goodEntry(1)}, {none, first}},
      {"no object at all", {"rubbish", "", "[]"}, {none, none, none}},
      {"only an id", {goodEntry(1), R"({"id":"a1b2c3fffe0a1b02"})"}, {first, {second.mac, first.address}}},
      {"only an id at first", {R"({"id":"a1b2c3fffe0a1b02"})", goodEntry(1)}, {{second.mac, ""}, first}},
      {"only an address",
       {goodEntry(1), R"({"internalipaddress":"192.168.100.102"})"},
       {first, {first.mac, second.address}}},
      {"only an address at first", {R"({"internalipaddress":"10.0.0.1"})"}, {{"", "10.0.0.1"}}},
      {"neither", {goodEntry(1), "{}", R"({"ID":"x","internalIpAddress":"y","name":"z"})"}, {first, first, first}},
      {"empty members", {goodEntry(1), entry("", ""), "{}"}, {first, none, none}},
  };
  for (const auto& row : cases) {
    EXPECT_EQ(payloadFor(router, row.entries), payloadOf(bridgeList(row.slots))) << row.name;
  }
}

TEST_F(HueBridgesTest, EachWayOfBeingNoObjectIsSkipped) {
  const std::string noObjects[] = {"",
                                   " ",
                                   "{",
                                   "}",
                                   "null",
                                   "[]",
                                   R"(["id","x"])",
                                   R"("id")",
                                   R"({"id":"x")",
                                   R"({"id":"x)",
                                   R"({"id")",
                                   "[" + goodEntry(2).substr(0, 40),
                                   goodEntry(2).substr(0, goodEntry(2).size() - 1),
                                   std::string(kEntrySize, '{'),
                                   std::string(kEntrySize, '"'),
                                   std::string(kEntrySize, '\\'),
                                   std::string(kEntrySize, 'x'),
                                   std::string(kEntrySize, '\xFF'),
                                   '\0' + goodEntry(2)};
  for (const std::string& noObject : noObjects) {
    EXPECT_EQ(payloadFor(router, {goodEntry(1), noObject}), payloadOf(bridgeList({goodSlot(1), goodSlot(1)})))
        << noObject;
  }
}

TEST_F(HueBridgesTest, AnObjectIsReadHoweverItIsWritten) {
  const Slot slot{"a1:b2:c3:0a:1b:02", "10.0.0.2"};
  const std::string objects[] = {
      entry("a1b2c3fffe0a1b02", "10.0.0.2"),
      R"({"internalipaddress":"10.0.0.2","id":"a1b2c3fffe0a1b02"})",
      R"( { "id" : "a1b2c3fffe0a1b02","internalipaddress":"10.0.0.2"})",
      entry("a1b2c3fffe0a1b02", "10.0.0.2") + "]}rubbish",
      entry("a1b2c3fffe0a1b02", "10.0.0.2") + '\0' + "rubbish",
      entry("a1b2c3fffe0a1b02ABCD", "10.0.0.2"),
      entry("a1b2c3....0a1b02", "10.0.0.2"),
  };
  for (const std::string& object : objects) {
    EXPECT_EQ(payloadFor(router, {object}), payloadOf(bridgeList({slot}))) << object;
  }
}

TEST_F(HueBridgesTest, AnEntryMayFillItsFieldWithoutANul) {
  const std::string full = entry("a1b2c3fffe0a1b01", "1921681001234567x");
  ASSERT_EQ(full.size(), kEntrySize);
  EXPECT_EQ(payloadFor(router, {full, goodEntry(2)}),
            payloadOf(bridgeList({{"a1:b2:c3:0a:1b:01", "1921681001234567x"}, goodSlot(2)})));
  const std::string unfinished = entry("a1b2c3fffe0a1b01", "1921681001234567xx").substr(0, kEntrySize);
  EXPECT_EQ(payloadFor(router, {unfinished, R"("})", goodEntry(2)}),
            payloadOf(bridgeList({{"", ""}, {"", ""}, goodSlot(2)})))
      << "it does not go on in the next entry";
}

TEST_F(HueBridgesTest, AShortIdTakesNothingFromTheOneBefore) {
  const struct {
    const char* id;
    const char* mac;
  } cases[] = {{"a", "a"},
               {"ab", "ab:"},
               {"abc", "ab:c"},
               {"abcdef", "ab:cd:ef:"},
               {"abcdef7", "ab:cd:ef:"},
               {"abcdef789", "ab:cd:ef:"},
               {"abcdef789A", "ab:cd:ef:"},
               {"abcdef789AB", "ab:cd:ef:B"}};
  for (const auto& row : cases) {
    EXPECT_EQ(payloadFor(router, {goodEntry(1), entry(row.id, "10.0.0.1")}),
              payloadOf(bridgeList({goodSlot(1), {row.mac, "10.0.0.1"}})))
        << row.id;
  }
}

TEST_F(HueBridgesTest, LongMembersStayInTheirSlots) {
  const std::string longId = R"({"id":")" + std::string(56, 'f') + R"("})";
  const std::string longAddress = R"({"internalipaddress":")" + std::string(41, '9') + R"("})";
  ASSERT_EQ(longId.size(), kEntrySize);
  ASSERT_EQ(longAddress.size(), kEntrySize);
  EXPECT_EQ(
      payloadFor(router, {longId, longAddress, goodEntry(1)}),
      payloadOf(bridgeList({{"ff:ff:ff:ff:ff:ff", ""}, {"ff:ff:ff:ff:ff:ff", std::string(41, '9')}, goodSlot(1)})));
}

TEST_F(HueBridgesTest, NothingOfAListIsLeftInTheNextOne) {
  payloadFor(router, goodEntries(25));
  EXPECT_EQ(payloadFor(router, {"rubbish"}), payloadOf(bridgeList({{"", ""}})));
  EXPECT_EQ(payloadFor(router, 0, {}), payloadOf(bridgeList({})));
}

TEST_F(HueBridgesTest, AShortAnswerIsCompletedByTheOneBefore) {
  payloadFor(router, goodEntries(25));
  router.hue().send(Wire(8).number(4, 3).all());
  EXPECT_EQ(payloadOf(router.takeEvents().at(0)), payloadOf(bridgeList(goodSlots(3))));
  Wire start(8 + 65);
  router.hue().send(start.number(4, 2).text(8, goodEntry(7)).all());
  EXPECT_EQ(payloadOf(router.takeEvents().at(0)), payloadOf(bridgeList({goodSlot(7), goodSlot(1)})));
}
