// Real Z-Wave nodes, from a collection that is not part of the project: the build is told its folder, TEMBRA_CORPUS.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <fstream>
#include <nlohmann/json.hpp>
#include <string>

#include "kit/router.h"
#include "node_agreement.h"

using classify::Outcome;
using kit::Node;
using kit::Router;
using nlohmann::json;

namespace {

constexpr unsigned char kListEnd = 0xFF;

json realNodes() {
  std::ifstream file(TEMBRA_CORPUS "/zwave_real.json");
  return json::parse(file, nullptr, false);
}

// A block holds what fits: 52 command classes and their end, 180 values and theirs.
ZwNodeInfo blockOf(const json& node) {
  ZwNodeInfo block = Node(9).block();
  block.basicClass = node.at("basic").get<unsigned char>();
  block.genericClass = node.at("generic").get<unsigned char>();
  block.specificClass = node.at("specific").get<unsigned char>();
  const json& classes = node.at("classes");
  const std::size_t listed = std::min(classes.size(), std::size(block.commandClasses) - 1);
  for (std::size_t i = 0; i < listed; ++i) block.commandClasses[i] = classes.at(i).get<unsigned char>();
  block.commandClasses[listed] = kListEnd;
  const json& values = node.at("values");
  const std::size_t offered = std::min(values.size(), std::size(block.values) - 1);
  for (std::size_t i = 0; i < offered; ++i) {
    const auto value = values.at(i).get<std::array<unsigned char, 3>>();
    block.values[i] = {value[0], value[1], value[2]};
  }
  return block;
}

}  // namespace

TEST(RealNodesTest, AreClassifiedAsTheRulesSay) {
  Router router;
  router.database().nextId("17");
  const json nodes = realNodes();
  ASSERT_TRUE(nodes.is_array());
  std::size_t same = 0;
  for (const json& node : nodes) {
    const ZwNodeInfo block = blockOf(node);
    const Outcome before = classify::marked();
    const Outcome expected = oracle::readNode(block, before, 17);
    const auto label = node.at("label").get<std::string>();
    same += classify::expectSame(classify::classifyBy(router.assoc(), block, before), expected, label) ? 1U : 0U;
  }
  EXPECT_EQ(same, 139U);
}
