// Every pair of a generic and a specific device class, with and without the command classes that matter.
#include <depot.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <ostream>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "kit/faults.h"
#include "kit/router.h"
#include "kit/sanitized.h"
#include "node_agreement.h"
#include "oracle/class_rows.h"

using classify::Outcome;
using kit::Node;
using kit::Router;
using oracle::ClassRow;
using oracle::classRow;
using oracle::classRows;

TEST(NodeClassRows, AreWhole) {
  std::set<std::pair<int, int>> pairs;
  std::set<int> closed;
  for (const ClassRow& row : classRows()) {
    pairs.emplace(row.generic, row.specific);
    if (row.specific == oracle::kOther) closed.insert(row.generic);
  }
  EXPECT_EQ(classRows().size(), 131U);
  EXPECT_EQ(pairs.size(), classRows().size()) << "a pair has two rows";
  for (const ClassRow& row : classRows()) EXPECT_EQ(closed.count(row.generic), 1U) << row.generic;
}

struct Supported {
  const char* name;
  std::vector<unsigned char> classes;
  friend std::ostream& operator<<(std::ostream& stream, const Supported& supported) { return stream << supported.name; }
};

class NodeClassSweep : public testing::TestWithParam<Supported> {};

INSTANTIATE_TEST_SUITE_P(With, NodeClassSweep,
                         testing::Values(Supported{"Nothing", {}}, Supported{"Meter", {0x32}},
                                         Supported{"Alarm", {0x71}}, Supported{"Level", {0x26}},
                                         Supported{"MeterAlarm", {0x32, 0x71}}, Supported{"MeterLevel", {0x32, 0x26}},
                                         Supported{"AlarmLevel", {0x71, 0x26}},
                                         Supported{"MeterAlarmLevel", {0x26, 0x71, 0x32}}),
                         [](const auto& tested) { return tested.param.name; });

namespace {

ZwNodeInfo nodeOf(const std::vector<unsigned char>& classes) {
  Node node(9);
  node.values({{0x25, 0, 1}});
  for (std::size_t i = 0; i < classes.size(); ++i) node.block().commandClasses[i] = classes[i];
  node.block().commandClasses[classes.size()] = 0xFF;
  return node.block();
}

}  // namespace

TEST_P(NodeClassSweep, EveryPairIsClassifiedByItsRow) {
  Router router;
  router.fail(kit::Call::kOpenDatabase, kit::depotError(DP_EOPEN, EMFILE), 0x10000);  // no time for files
  TembraAssociation& assoc = router.assoc();
  const Outcome before = classify::marked();
  ZwNodeInfo node = nodeOf(GetParam().classes);
  std::set<const ClassRow*> used;
  int same = 0;
  int tried = 0;
  for (int pair = 0; pair < 0x10000 && same == tried; ++pair) {
    node.genericClass = static_cast<unsigned char>(pair >> 8);
    node.specificClass = static_cast<unsigned char>(pair & 0xFF);
    const ClassRow& row = classRow(node.genericClass, node.specificClass);
    if (row.specific == oracle::kOther && pair % kit::kOneIn != 0) continue;
    ++tried;
    used.insert(&row);
    Outcome expected = oracle::readNode(node, before, -1);
    expected.log.insert(expected.log.begin(), "stderr dpopen: open error");
    same += classify::expectSame(classify::classifyBy(assoc, node, before), expected, std::to_string(pair)) ? 1 : 0;
  }
  EXPECT_EQ(same, tried);
  EXPECT_GE(tried, 0x10000 / kit::kOneIn);
  EXPECT_EQ(used.size(), classRows().size()) << "a row was never used";
}
