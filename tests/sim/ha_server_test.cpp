// What stands in the database after the library's notices, read back through Depot.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <set>
#include <string>

#include "database/depot_words.h"
#include "sim/core/record_bytes.h"
#include "support/caller.h"
#include "support/running_sim.h"
#include "tembra/vocabulary.h"

namespace tembra::sim::test {
namespace {

ZwNodeInfo addedNode(unsigned char node, int type) {
  ZwNodeInfo block{};
  block.nodeId = node;
  block.deviceKind = DEVICE_ZWAVE;
  block.finalType = type;
  setText(block.name, "Plug " + std::to_string(node));
  setText(block.location, "Hall");
  block.requestMark = 255;
  return block;
}

ZwNodeInfo removedNode(unsigned char node) {
  ZwNodeInfo block = addedNode(node, 0);
  block.requestMark = 254;
  return block;
}

class HaServerTest : public testing::Test {
 protected:
  void zwave(const ZwNodeInfo& block) {
    caller.notice(RECORD_ZWAVE, bytesOf(block));
    sim.tell("status");  // the notice was handled before this is answered
  }
  void zigbee(const ZbDeviceInfo& device) {
    caller.notice(RECORD_ZIGBEE, bytesOf(device));
    sim.tell("status");
  }
  void removeAll() {
    const std::string text = "removeAllDevices";
    caller.notice(RECORD_ZIGBEE, {text.begin(), text.end()});
    sim.tell("status");
  }

  Caller caller;
  RunningSim sim;
};

TEST_F(HaServerTest, CreatesAnEmptyDatabaseAtStart) {
  EXPECT_EQ(kDatabase.keySet(), (std::set<std::string>{"NextDevid", "Version"}));
  EXPECT_EQ(kDatabase.text("NextDevid"), "1");
}

TEST_F(HaServerTest, StoresAnAddedNode) {
  zwave(addedNode(7, DEVTYPE_BINARY_SWITCH));
  const auto record = kDatabase.record<DeviceRecord>("1");
  EXPECT_EQ(record.id, 1);
  EXPECT_STREQ(record.name, "Plug 7");
  EXPECT_EQ(record.zwaveNode, 7U);
  EXPECT_EQ(record.zigbeeAddress, 0U);
  EXPECT_EQ(record.radioKind, RADIO_ZWAVE);
  EXPECT_STREQ(record.typeName, "BinarySwitch");
  EXPECT_EQ(kDatabase.text("NextDevid"), "2");
  EXPECT_EQ(sim.stop(), 0);
}

TEST(HaServerTimeline, ShowsANameWithoutWhatSteersATerminal) {
  Caller caller;
  RunningSim sim({"--timeline"});
  ZwNodeInfo block = addedNode(7, DEVTYPE_BINARY_SWITCH);
  setText(block.name, "\x1b[2J\n\x9b\xc2\x9b\xe2\x80\xaemoor");
  caller.notice(RECORD_ZWAVE, bytesOf(block));
  sim.stop();
  const std::string output = sim.program().output();
  EXPECT_NE(output.find("device 1 stored: ?[2J????moor\n"), std::string::npos) << output;
}

TEST_F(HaServerTest, StoresOneIndexRecordForEachEntryOfTheTable) {
  ZwNodeInfo block = addedNode(7, DEVTYPE_GENERIC_DEVICE);
  block.indexes[0] = {INDEX_SWITCH, 1};
  block.indexes[1] = {INDEX_ENERGY, 2};
  zwave(block);
  EXPECT_EQ(kDatabase.keySet(), (std::set<std::string>{"NextDevid", "Version", "1", "1.1", "1.2"}));
  EXPECT_STREQ(kDatabase.record<IndexRecord>("1.2").value, "0");
  EXPECT_EQ(kDatabase.record<IndexRecord>("1.2").at0[0], INDEX_ENERGY);
}

TEST_F(HaServerTest, StoresAFullIndexTable) {
  ZwNodeInfo block = addedNode(7, DEVTYPE_GENERIC_DEVICE);
  for (ZwIndexEntry& entry : block.indexes) entry = {INDEX_SWITCH, 1};
  zwave(block);
  EXPECT_TRUE(kDatabase.keySet().contains("1.31"));
  EXPECT_FALSE(kDatabase.keySet().contains("1.32"));
  EXPECT_EQ(sim.stop(), 0);
}

TEST_F(HaServerTest, DropsARemovedNodeAndOnlyThat) {
  ZwNodeInfo block = addedNode(7, DEVTYPE_GENERIC_DEVICE);
  block.indexes[0] = {INDEX_SWITCH, 1};
  zwave(block);
  for (unsigned char node = 8; node <= 17; ++node) zwave(addedNode(node, DEVTYPE_SIREN));  // ids 2 to 11
  block.nodeId = 17;
  block.requestMark = 255;
  zwave(block);  // id 12, with an index record
  zwave(removedNode(7));
  EXPECT_FALSE(kDatabase.keySet().contains("1"));
  EXPECT_FALSE(kDatabase.keySet().contains("1.1"));
  EXPECT_TRUE(kDatabase.keySet().contains("10"));
  EXPECT_TRUE(kDatabase.keySet().contains("12.1"));
  EXPECT_EQ(kDatabase.text("NextDevid"), "13");
}

TEST_F(HaServerTest, ANodeThatIsHandedOverAgainReplacesItself) {
  zwave(addedNode(7, DEVTYPE_SIREN));
  zwave(addedNode(7, DEVTYPE_BINARY_SWITCH));
  EXPECT_EQ(kDatabase.keySet(), (std::set<std::string>{"NextDevid", "Version", "2"}));
}

TEST_F(HaServerTest, DropsEveryDeviceButKeepsCounting) {
  zwave(addedNode(7, DEVTYPE_SIREN));
  zwave(addedNode(8, DEVTYPE_SIREN));
  removeAll();
  EXPECT_EQ(kDatabase.keySet(), (std::set<std::string>{"NextDevid", "Version"}));
  EXPECT_EQ(kDatabase.text("NextDevid"), "3");
  EXPECT_EQ(sim.stop(), 0);
}

ZbDeviceInfo addedDevice(unsigned short address, int entries) {
  ZbDeviceInfo device{};
  device.shortAddress = address;
  device.msgCode = 10;
  device.devType = DEVTYPE_MULTILEVEL_SWITCH;
  setText(device.name, "Lamp");
  setText(device.location, "Hall");
  device.indexCount = static_cast<unsigned char>(entries);
  for (ZbIndexEntry& entry : device.indexes) entry = {INDEX_LEVEL, 11};
  return device;
}

ZbDeviceInfo removedDevice(unsigned short address) {
  ZbDeviceInfo device{};
  device.shortAddress = address;
  device.msgCode = 2;
  return device;
}

TEST_F(HaServerTest, StoresAnAddedZigbeeDeviceWithItsIndexTable) {
  zigbee(addedDevice(0x1234, 2));
  const auto record = kDatabase.record<DeviceRecord>("1");
  EXPECT_STREQ(record.name, "Lamp");
  EXPECT_EQ(record.zigbeeAddress, 0x1234U);
  EXPECT_EQ(record.zwaveNode, 0U);
  EXPECT_NE(record.radioKind, RADIO_ZWAVE);
  EXPECT_NE(record.radioKind, RADIO_IP);
  EXPECT_STREQ(record.typeName, "MultilevelSwitch");
  EXPECT_EQ(kDatabase.keySet(), (std::set<std::string>{"NextDevid", "Version", "1", "1.1", "1.2"}));
  EXPECT_EQ(kDatabase.record<IndexRecord>("1.2").at0[0], INDEX_LEVEL);
  EXPECT_EQ(kDatabase.record<IndexRecord>("1.2").at0[1], 11);
  EXPECT_EQ(sim.stop(), 0);
}

TEST_F(HaServerTest, StoresNoMoreIndexRecordsThanAZigbeeTableHas) {
  zigbee(addedDevice(0x1234, 255));
  EXPECT_TRUE(kDatabase.keySet().contains("1.29"));
  EXPECT_FALSE(kDatabase.keySet().contains("1.30"));
}

TEST_F(HaServerTest, DropsTheZigbeeDeviceOfAnAddressAndNothingElse) {
  zigbee(addedDevice(0x0007, 1));
  zigbee(addedDevice(0x0107, 1));
  zwave(addedNode(7, DEVTYPE_SIREN));
  zigbee(removedDevice(0x0007));
  EXPECT_EQ(kDatabase.keySet(), (std::set<std::string>{"NextDevid", "Version", "2", "2.1", "3"}));
  zwave(removedNode(7));
  zigbee(removedDevice(0x0107));
  EXPECT_EQ(kDatabase.keySet(), (std::set<std::string>{"NextDevid", "Version"}));
  EXPECT_EQ(sim.stop(), 0);
}

TEST_F(HaServerTest, AZigbeeDeviceThatIsHandedOverAgainReplacesItself) {
  zigbee(addedDevice(0x1234, 3));
  zigbee(addedDevice(0x1234, 1));
  EXPECT_EQ(kDatabase.keySet(), (std::set<std::string>{"NextDevid", "Version", "2", "2.1"}));
}

TEST_F(HaServerTest, MakesTheDatabaseAnewWhenAReaderDeletedIt) {
  zwave(addedNode(7, DEVTYPE_SIREN));
  std::filesystem::remove(kit::kDatabasePath);
  zwave(addedNode(8, DEVTYPE_SIREN));
  EXPECT_EQ(kDatabase.keySet(), (std::set<std::string>{"NextDevid", "Version", "2"}));
}

TEST_F(HaServerTest, AStoredNodeIsNotDescribedAgainWhenItRejoins) {
  caller.add();
  sim.tell("press siren");
  sim.awaitIdle();
  zwave(addedNode(2, DEVTYPE_SIREN));
  caller.heardSoFar();
  caller.add();
  sim.tell("press siren");
  sim.awaitIdle();
  EXPECT_EQ(summary(caller.heardSoFar()), "1036/2 1036/2");
}

TEST(HaServerRestart, AStoredDeviceKeepsItsNode) {
  Caller caller;
  {
    RunningSim sim;
    caller.add();
    sim.tell("press siren");
    sim.awaitIdle();
    caller.notice(RECORD_ZWAVE, bytesOf(addedNode(2, DEVTYPE_SIREN)));
    EXPECT_EQ(sim.stop(), 0);
  }
  const RunningSim again;
  caller.heardSoFar();
  caller.remove();
  again.tell("press siren");
  EXPECT_EQ(caller.hear().block.nodeId, 2);
}

TEST(HaServerRestart, AStoredZigbeeDeviceKeepsItsAddress) {
  Caller caller;
  {
    RunningSim sim;
    for (const char* device : {"zb-plug", "zb-siren"}) {
      caller.zigbeeAdd();
      sim.tell(std::string("press ") + device);
      sim.awaitIdle();
    }
    caller.notice(RECORD_ZIGBEE, bytesOf(addedDevice(caller.heardSoFar().back().as<ZbDeviceInfo>().shortAddress, 1)));
    EXPECT_EQ(sim.stop(), 0);
  }
  const RunningSim again;
  caller.zigbeeRemove();
  again.tell("press zb-siren");
  EXPECT_EQ(caller.hear().as<ZbDeviceInfo>().shortAddress, 0x1A02);
}

TEST(HaServerStart, ADatabaseThatCannotBeOpenedIsOneSentence) {
  std::ofstream("/tmp/rubbish") << "no database";
  for (const char* path : {"/tmp", "/tmp/nowhere/ddb", "/tmp/rubbish"}) {
    RunningSim sim({"--db", path});
    EXPECT_EQ(sim.program().end().status, 1);
    EXPECT_NE(sim.program().errors().find("tembra-sim: the database " + std::string(path) + " cannot be opened: "),
              std::string::npos)
        << sim.program().errors();
  }
}

// Whoever looked into a bucket behind the end would be killed.
void claimMoreBucketsThanBytes(::depot::Words& words) { words.set(::depot::kBuckets, 1 << 24); }

// Whoever looked for the version would go round for ever.
void leadTheSearchForTheVersionIntoACircle(::depot::Words& words) {
  words.set(words.bucketOf("Version"), words.offsetOf(0));
  words.leadTo(0, 0);
}

TEST(HaServerRun, ADatabaseThatIsDamagedMeanwhileIsTrouble) {
  for (const auto damage : {claimMoreBucketsThanBytes, leadTheSearchForTheVersionIntoACircle}) {
    Caller caller;
    RunningSim sim;
    kit::Database database;
    ::depot::Words words(database.file());
    damage(words);
    database.replaceWith(words.file());
    caller.notice(RECORD_ZWAVE, bytesOf(addedNode(2, DEVTYPE_SIREN)));
    EXPECT_EQ(sim.stop(), 1);
    EXPECT_NE(sim.program().errors().find("the database /tmp/ddb cannot be opened: broken database file"),
              std::string::npos)
        << sim.program().errors();
    database.remove();
  }
}

}  // namespace
}  // namespace tembra::sim::test
