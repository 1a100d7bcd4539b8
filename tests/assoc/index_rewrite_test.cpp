// Index slots of a generic device, renamed for the type that the user chose.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <map>
#include <string>
#include <vector>

#include "kit/router_test.h"

using kit::lines;
using kit::Router;

namespace {

using ChangeIndexTest = kit::ConnectedTest;

// Every type that is ever rewritten, one that never is between them, and each of them a second time.
constexpr unsigned char kTypes[] = {14, 2, 1, 17, 36, 35, 37, 38, 39, 50, 14, 2, 1, 17, 35, 37, 38, 39};

std::vector<int> typesOf(const ZwNodeInfo& node) {
  std::vector<int> types;
  for (const ZwIndexEntry& entry : node.indexes) {
    if (entry.type == 0) break;
    types.push_back(entry.type);
  }
  return types;
}

void fillIndexTable(ZwNodeInfo& node) {
  std::memset(&node, 0, sizeof node);
  for (std::size_t i = 0; i < std::size(kTypes); ++i) {
    node.indexes[i] = {kTypes[i], static_cast<unsigned char>(100 + i)};
  }
}

using Changes = std::vector<std::pair<int, int>>;

const std::map<int, Changes> kRewrites = {
    {36, {{14, 15}}},
    {37, {{14, 16}}},
    {39, {{2, 4}}},
    {41, {{2, 3}}},
    {42, {{1, 13}}},
    {46, {{2, 3}}},
    {52, {{14, 42}, {17, 20}, {1, 43}}},
    {54, {{35, 45}, {37, 46}, {38, 47}, {39, 48}}},
    {55, {{17, 19}}},
};

std::vector<int> typesAfter(const Changes& changes) {
  std::vector<int> types(std::begin(kTypes), std::end(kTypes));
  for (const auto& [from, to] : changes) *std::find(types.begin(), types.end(), from) = to;
  return types;
}

constexpr const char* kFound = "log 3 ChangeIndexType:: IndexType Found";

std::string foundTimes(std::size_t times) {
  std::string trace;
  for (std::size_t i = 0; i < times; ++i) trace += lines({kFound});
  return trace;
}

IndexType index(int type) { return static_cast<IndexType>(type); }

}  // namespace

TEST(GenericIndexTest, EachTypeHasItsRewritesAndOthersHaveNone) {
  Router router;
  TembraAssociation& assoc = router.connect();
  std::size_t rewritten = 0;
  for (int type = -1; type <= 320; ++type) {
    const auto row = kRewrites.find(type);
    const Changes changes = row == kRewrites.end() ? Changes{} : row->second;
    rewritten += changes.empty() ? 0 : 1;
    fillIndexTable(assoc.zwNodeWork);
    assoc.GenericIndexType(static_cast<DevType>(type));
    EXPECT_EQ(typesOf(assoc.zwNodeWork), typesAfter(changes)) << type;
    EXPECT_EQ(assoc.zwNodeWork.indexes[3].instance, 103);
    EXPECT_EQ(router.takeTrace(), foundTimes(changes.size())) << type;
  }
  EXPECT_EQ(rewritten, 9U);
}

TEST(GenericIndexTest, AnAbsentSlotIsPassedOver) {
  Router router;
  TembraAssociation& assoc = router.connect();
  assoc.zwNodeWork.indexes[0] = {38, 1};
  assoc.GenericIndexType(DEVTYPE_ZWAVE_AC_EXTENDER);
  EXPECT_EQ(typesOf(assoc.zwNodeWork), std::vector<int>({47}));
  EXPECT_EQ(router.takeTrace(), foundTimes(1));
}

TEST_F(ChangeIndexTest, ChangesTheFirstMatchOnly) {
  fillIndexTable(assoc.zwNodeWork);
  assoc.ChangeIndexType(index(17), index(99));
  EXPECT_EQ(typesOf(assoc.zwNodeWork), typesAfter({{17, 99}}));
  EXPECT_EQ(router.takeTrace(), foundTimes(1));
}

TEST_F(ChangeIndexTest, StoresTheLowByteAndComparesTheWholeNumber) {
  fillIndexTable(assoc.zwNodeWork);
  assoc.ChangeIndexType(index(14), index(300));
  EXPECT_EQ(assoc.zwNodeWork.indexes[0].type, 300 & 0xFF);
  assoc.ChangeIndexType(index(256 + 2), index(99));
  EXPECT_EQ(assoc.zwNodeWork.indexes[1].type, 2);
  EXPECT_EQ(router.takeTrace(), foundTimes(1));
}

TEST_F(ChangeIndexTest, StopsAtTheFirstEmptySlot) {
  fillIndexTable(assoc.zwNodeWork);
  assoc.zwNodeWork.indexes[0].type = 0;
  const ZwNodeInfo before = assoc.zwNodeWork;
  for (const int from : {0, 2, 14, 17}) assoc.ChangeIndexType(index(from), index(99));
  EXPECT_EQ(std::memcmp(&assoc.zwNodeWork, &before, sizeof before), 0);
  EXPECT_EQ(router.takeTrace(), "");
}

TEST_F(ChangeIndexTest, ATableWithoutEndIsWalkedToTheLastByteOfTheRecord) {
  ZwNodeInfo& node = assoc.zwNodeWork;
  std::fill(std::begin(node.indexes), std::end(node.indexes), ZwIndexEntry{5, 5});
  node.indexes[30].type = 6;
  node.indexesEnd = 14;
  std::memset(&assoc.zwNodeRx, 77, sizeof assoc.zwNodeRx);
  assoc.ChangeIndexType(index(77), index(99));
  EXPECT_EQ(assoc.zwNodeRx.nodeId, 77) << "stands behind the record";
  EXPECT_EQ(router.takeTrace(), "");
  assoc.ChangeIndexType(index(6), index(99));
  EXPECT_EQ(node.indexes[30].type, 99);
  assoc.GenericIndexType(DEVTYPE_ZWAVE_SMOKE_SENSOR);
  EXPECT_EQ(node.indexesEnd, 15);
  EXPECT_EQ(router.takeTrace(), foundTimes(2));
}

TEST_F(ChangeIndexTest, LeavesTheZigbeeRecordAlone) {
  std::memset(&assoc.zbDevice, 14, sizeof assoc.zbDevice);
  const ZbDeviceInfo before = assoc.zbDevice;
  fillIndexTable(assoc.zwNodeWork);
  assoc.ChangeIndexType(index(14), index(15));
  EXPECT_EQ(std::memcmp(&assoc.zbDevice, &before, sizeof before), 0);
}
