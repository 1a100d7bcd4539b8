// The list of command classes: copied, said and searched, whatever its length.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "kit/router.h"
#include "node_agreement.h"

using classify::Outcome;
using kit::Node;
using kit::Router;

namespace {

constexpr std::size_t kRoom = sizeof ZwNodeInfo::commandClasses;

// A list of `length` entries; one that fills its field has no end mark.
ZwNodeInfo nodeWithList(std::size_t length) {
  ZwNodeInfo node = Node(5).generic(0x10).specific(1).block();
  for (std::size_t i = 0; i < kRoom; ++i) node.commandClasses[i] = static_cast<unsigned char>(0x40 + i);
  if (length < kRoom) node.commandClasses[length] = 0xFF;
  return node;
}

}  // namespace

TEST(CommandClassesTest, ListsOfEveryLength) {
  Router router;
  router.database().nextId("17");
  int lengths = 0;
  for (std::size_t length = 0; length <= kRoom; ++length, ++lengths) {
    const ZwNodeInfo node = nodeWithList(length);
    const Outcome before = classify::marked();
    const Outcome expected = oracle::readNode(node, before, 17);
    classify::expectSame(classify::classifyBy(router.assoc(), node, before), expected, std::to_string(length));
  }
  EXPECT_EQ(lengths, 54);
}

TEST(CommandClassesTest, WhatStandsBehindTheListIsNoCommandClass) {
  Router router;
  ZwNodeInfo node = nodeWithList(kRoom);
  std::fill(std::begin(node.commandClasses), std::end(node.commandClasses), static_cast<unsigned char>(0x25));
  node.basicClass = 0x32;
  EXPECT_EQ(classify::classifyBy(router.assoc(), node, classify::marked()).classifiedType, 1);
  node = Node(5).generic(0x10).specific(1).classes({0x25, 0xFF, 0x32}).block();
  EXPECT_EQ(classify::classifyBy(router.assoc(), node, classify::marked()).classifiedType, 1);
}

TEST(CommandClassesTest, AZeroDoesNotEndTheReceivedList) {
  Router router;
  const ZwNodeInfo node = Node(5).generic(0x10).specific(1).classes({0x25, 0x00, 0x32}).block();
  const Outcome actual = classify::classifyBy(router.assoc(), node, classify::marked());
  EXPECT_EQ(actual.classifiedType, 45);
  EXPECT_EQ(actual.log.at(0), "log 0 node 5 Supported Command Classes:0x25 0x00 0x32 ");
}

TEST(CommandClassesTest, AreFoundByTheFirstOfTheirKind) {
  const struct {
    std::vector<unsigned char> list;
    unsigned char wanted;
    int found;
  } rows[] = {
      {{0xFF}, 0x32, 0},
      {{0x32, 0xFF}, 0x32, 1},
      {{0x25, 0x32, 0x32, 0xFF}, 0x32, 1},
      {{0x25, 0xFF, 0x32, 0xFF}, 0x32, 0},
      {{0x00, 0xFE, 0xFF}, 0xFE, 1},
      {{0x00, 0xFF}, 0x00, 1},
      {{0x25, 0xFF}, 0xFF, 0},
  };
  Router router;
  TembraAssociation& assoc = router.assoc();
  int checked = 0;
  for (const auto& row : rows) {
    std::vector<unsigned char> list = row.list;
    EXPECT_EQ(assoc.CommandExists(list.data(), row.wanted), row.found) << checked;
    EXPECT_EQ(router.takeTrace(), row.found == 1 ? "log 0 libTembraAssoc:cmd matched\n" : "") << checked;
    ++checked;
  }
  EXPECT_EQ(checked, 7);
}
