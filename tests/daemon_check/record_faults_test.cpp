// The lists and members of the records, one fault at a time.
#include "daemon_check/record_faults.h"

#include <gtest/gtest.h>

#include <cstring>
#include <functional>
#include <iterator>

#include "sim/core/record_bytes.h"
#include "sim/hue/bridges.h"
#include "sim/radio/network.h"
#include "sim/zigbee/descriptions.h"
#include "sim/zwave/node_blocks.h"

namespace tembra::daemon_check {
namespace {

template <typename Record>
Faults faultsAfter(Record record, const std::function<void(Record&)>& spoil) {
  spoil(record);
  return faultsIn(record);
}

TEST(FaultsOfANode, AreNamedOneByOne) {
  const ZwNodeInfo good = sim::describedNode(2, {"plug", "", 4, 16, 1, {0x25, 0x32}, {{0x25, 0, 1}}});
  const auto after = [&good](const std::function<void(ZwNodeInfo&)>& spoil) { return faultsAfter(good, spoil); };
  EXPECT_EQ(faultsIn(good), Faults());
  EXPECT_EQ(after([](ZwNodeInfo& node) { std::memset(node.commandClasses, 1, sizeof node.commandClasses); }),
            Faults{"the command classes have no end (0xFF)"});
  EXPECT_EQ(after([](ZwNodeInfo& node) { std::memset(node.values, 1, sizeof node.values); }),
            Faults{"the value triples have no end (command class 0)"});
  EXPECT_EQ(after([](ZwNodeInfo& node) { node.basicClass = 0; }), Faults{"the basic class is 0: no device is added"});
  EXPECT_EQ(after([](ZwNodeInfo& node) { node.indexesEnd = 1; }),
            Faults{"bytes that the library fills in are not zero"});
  EXPECT_EQ(after([](ZwNodeInfo& node) { node = ZwNodeInfo{}; }).size(), 2U) << "neither classes nor a basic class";
}

TEST(FaultsOfADevice, AreNamedOneByOne) {
  const sim::ZigbeeDevice plug{"plug", "", "Maker", "Model", 0, {{6, 1}, {0x0B04, 1}}, {1, 1, 0}, {0, 0}};
  const ZbDeviceInfo good = sim::describedDevice(0x1a01, ZIGBEE_INFO_COMPLETE, plug);
  const auto after = [&good](const std::function<void(ZbDeviceInfo&)>& spoil) { return faultsAfter(good, spoil); };
  constexpr const char* zeros = "the AC words of a plug that measures are zero: no device is added";
  EXPECT_EQ(faultsIn(good), Faults());
  EXPECT_EQ(after([](ZbDeviceInfo& device) { device.acCheckA = 0; }), Faults{zeros});
  EXPECT_EQ(after([](ZbDeviceInfo& device) { device.acCheckB = 0; }), Faults{zeros});
  EXPECT_EQ(after([](ZbDeviceInfo& device) {
              device.acCheckA = 0;
              device.clusters[0].cluster = 0x0402;
            }),
            Faults())
      << "no switch, no plug";
  EXPECT_EQ(after([](ZbDeviceInfo& device) {
              std::fill(std::begin(device.clusters), std::end(device.clusters), ZbClusterEntry{6, 1});
            }),
            Faults{"the clusters have no end (0xFFFF)"});
  EXPECT_EQ(after([](ZbDeviceInfo& device) { device.clusters[0].cluster = 0xFFFF; }),
            Faults{"there is no cluster: the device becomes a generic one"});
  EXPECT_EQ(after([](ZbDeviceInfo& device) { device.name[0] = 'x'; }),
            Faults{"bytes that the library fills in are not zero"});
}

TEST(FaultsOfBridges, AreNamedOneByOne) {
  HueAnswer good{};
  sim::HueBridges(2).list(good);
  const auto with = [&good](const char* text) {
    HueAnswer answer = good;
    std::memset(answer.entries[1].json, 0, sizeof answer.entries[1].json);
    sim::setText(answer.entries[1].json, text);
    return faultsIn(answer);
  };
  EXPECT_EQ(faultsIn(good), Faults());
  EXPECT_EQ(firstBridgeId(good), "02a1b2fffe0c0001");
  EXPECT_EQ(with("{"), Faults{"bridge 2 is no JSON object"});
  EXPECT_EQ(with("[]"), Faults{"bridge 2 is no JSON object"});
  EXPECT_EQ(with(R"({"id":1,"internalipaddress":""})"), Faults{"bridge 2 has no text \"id\""});
  EXPECT_EQ(with(R"({"id":"02a1b2fffe0c0001"})"), Faults{"bridge 2 has no text \"internalipaddress\""});
  EXPECT_EQ(with(R"({"id":"1","internalipaddress":""})"), Faults{"bridge 2 has an id that is not 16 characters long"});
  good.count = 51;
  EXPECT_EQ(faultsIn(good).front(), "a count of 51 bridges, and the library takes 25");
  good.count = 1;
  std::memset(good.entries[0].json, ' ', sizeof good.entries[0].json);
  EXPECT_EQ(faultsIn(good), Faults{"bridge 1 has no end"});
}

}  // namespace
}  // namespace tembra::daemon_check
