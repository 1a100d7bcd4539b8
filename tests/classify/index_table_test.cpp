// The index table of a generic device: what each value means, and where it is put.
#include <gtest/gtest.h>

#include <array>
#include <string>
#include <utility>
#include <vector>

#include "kit/router.h"
#include "kit/sanitized.h"
#include "node_agreement.h"
#include "oracle/index_rows.h"

using classify::Outcome;
using kit::Node;
using kit::Router;
using oracle::Lines;

namespace {

constexpr ZwValueTriple kSwitch{0x25, 7, 1};
constexpr ZwValueTriple kBattery{0x80, 0, 2};
constexpr ZwValueTriple kUnknown{0x86, 3, 4};

ZwNodeInfo nodeOf(const std::vector<ZwValueTriple>& values) {
  ZwNodeInfo node = Node(5).block();
  std::copy_n(values.begin(), values.size(), node.values);
  return node;
}

std::string nameOf(int commandClass, int index) {
  return "class " + std::to_string(commandClass) + " index " + std::to_string(index);
}

bool expectAsRead(TembraAssociation& assoc, const ZwNodeInfo& node, const std::string& what) {
  const Outcome before = classify::marked();
  Outcome expected = before;
  oracle::readValues(node, expected);
  return classify::expectSame(classify::deriveIndexesBy(assoc, node, before), expected, what);
}

// All pairs of bytes that have a row of their own, and the others.
std::vector<std::pair<unsigned char, unsigned char>> pairs() {
  std::vector<std::pair<unsigned char, unsigned char>> all;
  for (int pair = 0; pair < 0x10000; ++pair) {
    const bool hasRow = oracle::indexRow(pair >> 8, pair & 0xFF).type != oracle::kUndefined;
    if (hasRow || pair % kit::kOneIn == 0) all.emplace_back(pair >> 8, pair & 0xFF);
  }
  return all;
}

// The type and instance bytes of the table's first entries.
using Entries = std::vector<std::array<int, 2>>;

Entries entriesOf(const ZwNodeInfo& node, std::size_t count) {
  Entries entries;
  for (std::size_t k = 0; k < count; ++k) entries.push_back({node.indexes[k].type, node.indexes[k].instance});
  return entries;
}

}  // namespace

TEST(IndexTableTest, EveryPairOfACommandClassAndAnIndex) {
  Router router;
  EXPECT_EQ(oracle::indexRows().size(), 32U);
  EXPECT_GE(pairs().size(), std::size_t{0x10000} / kit::kOneIn);
  for (const auto& [commandClass, index] : pairs()) {
    const auto instance = static_cast<unsigned char>(commandClass ^ index);
    const ZwNodeInfo node = nodeOf({{commandClass, index, instance}});
    ASSERT_TRUE(expectAsRead(router.assoc(), node, nameOf(commandClass, index)));
  }
}

TEST(IndexTableTest, EveryPairBehindAnotherValue) {
  Router router;
  for (const auto& [commandClass, index] : pairs()) {
    const ZwNodeInfo node = nodeOf({kSwitch, {commandClass, index, 9}, kBattery});
    ASSERT_TRUE(expectAsRead(router.assoc(), node, nameOf(commandClass, index)));
  }
}

TEST(IndexTableTest, APlugWithAMeterAndABattery) {
  Router router;
  const ZwNodeInfo node = nodeOf({{0x25, 0, 1}, {0x32, 0, 1}, {0x32, 2, 1}, {0x80, 0, 0}});
  const Outcome actual = classify::deriveIndexesBy(router.assoc(), node, classify::marked());
  EXPECT_EQ(actual.log, Lines({
                            "log 3 libTembraAssoc:GenericDevice: command class: 37 command index 0",
                            "log 3 libTembraAssoc:GenericDevice: cmdclass 37 index 0 instance : 1 Enum: 1 ",
                            "log 3 libTembraAssoc:GenericDevice: command class: 50 command index 0",
                            "log 3 libTembraAssoc:GenericDevice: cmdclass 50 index 0 instance : 1 Enum: 80 ",
                            "log 3 libTembraAssoc:GenericDevice: command class: 50 command index 2",
                            "log 3 libTembraAssoc:GenericDevice: Enum is not defined for : cmdclass 50 ind 2",
                            "log 3 libTembraAssoc:GenericDevice: command class: 128 command index 0",
                            "log 3 libTembraAssoc:GenericDevice: cmdclass 128 index 0 instance : 0 Enum: 50 ",
                        }));
  EXPECT_EQ(entriesOf(actual.work, 3), (Entries{{1, 1}, {80, 1}, {50, 0}}));
  EXPECT_EQ(actual.work.indexes[3].type, 0);
}

TEST(IndexTableTest, EveryOrderOfUpToSevenValues) {
  constexpr ZwValueTriple choices[] = {kSwitch, kBattery, kUnknown};
  Router router;
  int orders = 0;
  for (int number = 0; number < 2187; ++number) {
    std::vector<ZwValueTriple> values;
    for (int rest = number; values.size() < 7; rest /= 3) values.push_back(choices[rest % 3]);
    orders += expectAsRead(router.assoc(), nodeOf(values), std::to_string(number)) ? 1 : 0;
  }
  EXPECT_EQ(orders, 2187);
}

TEST(IndexTableTest, TablesOfEveryLengthStayInTheBlock) {
  Router router;
  int lengths = 0;
  for (std::size_t length = 0; length <= std::size(ZwNodeInfo{}.values); ++length) {
    std::vector<ZwValueTriple> values(length, kSwitch);
    lengths += expectAsRead(router.assoc(), nodeOf(values), std::to_string(length)) ? 1 : 0;
    if (length > 0) values.back() = kUnknown;
    expectAsRead(router.assoc(), nodeOf(values), "undefined behind " + std::to_string(length));
  }
  EXPECT_EQ(lengths, 182);
}

TEST(IndexTableTest, AListWithoutEndIsReadUpToTheEndOfItsField) {
  Router router;
  ZwNodeInfo node = nodeOf(std::vector<ZwValueTriple>(std::size(ZwNodeInfo{}.values), kUnknown));
  node.deviceKind = 0x25252525;  // would go on as values
  const Outcome actual = classify::deriveIndexesBy(router.assoc(), node, classify::marked());
  EXPECT_EQ(actual.log.size(), 2U * 181);
  EXPECT_EQ(actual.log.back(), "log 3 libTembraAssoc:GenericDevice: Enum is not defined for : cmdclass 134 ind 3");
}
