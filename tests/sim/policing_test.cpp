// What the library must never send is reported and decides the exit status.
#include <gtest/gtest.h>

#include <cstddef>
#include <cstring>
#include <functional>
#include <ostream>
#include <string>
#include <vector>

#include "sim/core/record_bytes.h"
#include "support/caller.h"
#include "support/running_sim.h"
#include "tembra/vocabulary.h"

namespace tembra::sim::test {
namespace {

using Datagram = std::vector<unsigned char>;

Datagram command(int operation, int controllerCommand, std::size_t strayOffset = 0, unsigned char stray = 0) {
  ZwaveCommand command{};
  command.operation = operation;
  command.controllerCommand = controllerCommand;
  Datagram bytes = bytesOf(command);
  if (stray != 0) bytes[strayOffset] = stray;
  return bytes;
}

Datagram zwaveNotice(const std::function<void(ZwNodeInfo&)>& spoil) {
  ZwNodeInfo block{};
  block.nodeId = 5;
  block.deviceKind = DEVICE_ZWAVE;
  block.requestMark = 255;
  spoil(block);
  HaNotice notice{};
  notice.recordKind = RECORD_ZWAVE;
  std::memcpy(notice.record, &block, sizeof block);
  return bytesOf(notice);
}

Datagram kindNotice(int kind, std::size_t strayOffset, unsigned char stray) {
  HaNotice notice{};
  notice.recordKind = kind;
  notice.record[strayOffset] = stray;
  return bytesOf(notice);
}

template <std::size_t N>
void fill(char (&field)[N]) {
  std::memset(field, 'x', N);
}

struct Misdeed {
  const char* name;
  Endpoint to;
  Datagram datagram;
  const char* report;  ///< empty: nothing is wrong
};

void PrintTo(const Misdeed& misdeed, std::ostream* stream) { *stream << misdeed.name; }

std::vector<Misdeed> commandMisdeeds() {
  constexpr const char* unused = "bytes of a command that must be zero are not";
  return {
      {"GoodAdd", kZwaveServer, command(1, 1), ""},
      {"GoodRemove", kZwaveServer, command(1, 4), ""},
      {"GoodCancel", kZwaveServer, command(4, 0), ""},
      {"GoodReset", kZwaveServer, command(5, 0), ""},
      {"EmptyCommand", kZwaveServer, Datagram(), "a datagram of 0 bytes instead of 236"},
      {"ShortCommand", kZwaveServer, Datagram(235), "a datagram of 235 bytes instead of 236"},
      {"LongCommand", kZwaveServer, Datagram(237), "a datagram of 237 bytes instead of 236"},
      {"HugeCommand", kZwaveServer, Datagram(20000), "a datagram of 20000 bytes instead of 236"},
      {"ZeroCommand", kZwaveServer, Datagram(236), "an unknown command: operation 0, controller command 0"},
      {"UnknownOperation", kZwaveServer, command(2, 0), "an unknown command: operation 2, controller command 0"},
      {"UnknownControllerCommand", kZwaveServer, command(1, 2),
       "an unknown command: operation 1, controller command 2"},
      {"CancelWithControllerCommand", kZwaveServer, command(4, 1), "an unknown command: operation 4"},
      {"StrayByteAtStart", kZwaveServer, command(4, 0, 0, 1), unused},
      {"StrayByteBeforeOperation", kZwaveServer, command(4, 0, 191, 1), unused},
      {"StrayByteBehindOperation", kZwaveServer, command(4, 0, 196, 1), unused},
      {"StrayByteBeforeControllerCommand", kZwaveServer, command(4, 0, 211, 1), unused},
      {"StrayByteBehindControllerCommand", kZwaveServer, command(4, 0, 216, 1), unused},
      {"StrayByteAtEnd", kZwaveServer, command(4, 0, 235, 1), unused},
  };
}

std::vector<Misdeed> noticeMisdeeds() {
  constexpr const char* zigbeeMark = "a ZigBee record that is neither added nor removed";
  const auto leave = [](ZwNodeInfo&) {};
  Datagram strayBehindNode = zwaveNotice(leave);
  strayBehindNode[offsetof(HaNotice, record) + sizeof(ZwNodeInfo)] = 1;
  Datagram strayAtEnd = zwaveNotice(leave);
  strayAtEnd.back() = 1;
  return {
      {"GoodNotice", kHaServer, zwaveNotice(leave), ""},
      {"ShortNotice", kHaServer, Datagram(4099), "a datagram of 4099 bytes instead of 4100"},
      {"LongNotice", kHaServer, Datagram(4101), "a datagram of 4101 bytes instead of 4100"},
      {"ZeroNotice", kHaServer, Datagram(4100), zigbeeMark},
      {"UnknownKind", kHaServer, kindNotice(1, 0, 0), "a notice of an unknown kind"},
      {"UnknownZigbeeMark", kHaServer, kindNotice(0, offsetof(ZbDeviceInfo, msgCode), 12), zigbeeMark},
      {"StrayByteBehindNode", kHaServer, strayBehindNode, ""},
      {"StrayByteAtNoticeEnd", kHaServer, strayAtEnd, ""},
      {"UnknownMark", kHaServer, zwaveNotice([](ZwNodeInfo& block) { block.requestMark = 0; }),
       "a node block that is neither added nor removed"},
      {"WrongDeviceKind", kHaServer, zwaveNotice([](ZwNodeInfo& block) { block.deviceKind = DEVICE_ZIGBEE; }),
       "a node block whose device kind is not Z-Wave"},
      {"EndlessName", kHaServer, zwaveNotice([](ZwNodeInfo& block) { fill(block.name); }),
       "a node block whose name has no end"},
      {"EndlessLocation", kHaServer, zwaveNotice([](ZwNodeInfo& block) { fill(block.location); }),
       "a node block whose location has no end"},
  };
}

Datagram zigbeeCommand(const char* text, const char* argument, std::size_t strayOffset = 0) {
  ZigbeeCommand command{};
  setText(command.command, text);
  setText(command.argument, argument);
  Datagram bytes = bytesOf(command);
  if (strayOffset != 0) bytes[strayOffset] = 'x';
  return bytes;
}

std::vector<Misdeed> zigbeeMisdeeds() {
  constexpr const char* unused = "bytes of a command that must be zero are not";
  return {
      {"GoodAdd", kZigbeeServer, zigbeeCommand("option button1", "IAS"), ""},
      {"GoodRemove", kZigbeeServer, zigbeeCommand(" ", "remove"), ""},
      {"GoodCancel", kZigbeeServer, zigbeeCommand("network pjoin 0", "cancel"), ""},
      {"GoodFirstHalfOfReset", kZigbeeServer, zigbeeCommand("n l", ""), ""},
      {"SecondHalfOfResetAlone", kZigbeeServer, zigbeeCommand("option button0", ""),
       "the second half of a reset without its first half"},
      {"ShortCommand", kZigbeeServer, Datagram(319), "a datagram of 319 bytes instead of 320"},
      {"LongCommand", kZigbeeServer, Datagram(321), "a datagram of 321 bytes instead of 320"},
      {"ZeroCommand", kZigbeeServer, Datagram(320), R"(an unknown command: "", argument "")"},
      {"WrongArgument", kZigbeeServer, zigbeeCommand("option button1", "remove"),
       R"(an unknown command: "option button1", argument "remove")"},
      {"ResetWithArgument", kZigbeeServer, zigbeeCommand("n l", "IAS"), "an unknown command: \"n l\", argument"},
      {"UnprintableText", kZigbeeServer, zigbeeCommand("n\n\x1b\xc2\x9b\x9b", ""), "an unknown command: \"n????\""},
      {"EndlessTexts", kZigbeeServer, Datagram(320, 'x'), "an unknown command: \"xxx"},
      {"StrayByteBehindText", kZigbeeServer, zigbeeCommand(" ", "remove", 2), unused},
      {"StrayByteBeforeArgument", kZigbeeServer, zigbeeCommand(" ", "remove", 179), unused},
      {"StrayByteBehindArgument", kZigbeeServer, zigbeeCommand(" ", "remove", 187), unused},
      {"StrayByteAtEnd", kZigbeeServer, zigbeeCommand(" ", "remove", 319), unused},
  };
}

constexpr const char* kPolicedBridge = "02a1b2fffe0c0001";

Datagram hueCommand(unsigned code, const char* bridge, const char* argument, std::size_t strayOffset = 304) {
  HueCommand command{};
  command.command = code;
  setText(command.bridgeId, bridge);
  setText(command.argument, argument);
  Datagram bytes = bytesOf(command);
  if (strayOffset < bytes.size()) bytes[strayOffset] = 'x';
  return bytes;
}

std::vector<Misdeed> hueMisdeeds() {
  constexpr const char* wrongForm = "a bridge id of the wrong form: \"";
  return {
      {"GoodDiscovery", kHueServer, hueCommand(114, "", ""), ""},
      {"GoodAdd", kHueServer, hueCommand(100, kPolicedBridge, ""), ""},
      {"GoodAddOfForeignBridge", kHueServer, hueCommand(100, "001122fffeAABBCC", ""), ""},
      {"GoodBulb", kHueServer, hueCommand(105, kPolicedBridge, "Lamp"), ""},
      {"GoodRefresh", kHueServer, hueCommand(106, kPolicedBridge, "user"), ""},
      {"GoodRemove", kHueServer, hueCommand(109, kPolicedBridge, ""), ""},
      {"ShortCommand", kHueServer, Datagram(303), "a datagram of 303 bytes instead of 304"},
      {"LongCommand", kHueServer, Datagram(305), "a datagram of 305 bytes instead of 304"},
      {"ZeroCommand", kHueServer, Datagram(304), "an unknown command: 0"},
      {"UnknownCommand", kHueServer, hueCommand(101, kPolicedBridge, ""), "an unknown command: 101"},
      {"HugeCommand", kHueServer, hueCommand(0xFFFFFFFF, "", ""), "an unknown command: 4294967295"},
      {"NoBridge", kHueServer, hueCommand(100, "", ""), wrongForm},
      {"ShortBridge", kHueServer, hueCommand(100, "02a1b2fffe0c000", ""), wrongForm},
      {"LongBridge", kHueServer, hueCommand(100, "02a1b2fffe0c00011", ""), wrongForm},
      {"BridgeWithoutFiller", kHueServer, hueCommand(100, "02a1b20000000001", ""), wrongForm},
      {"BridgeOfOtherLetters", kHueServer, hueCommand(100, "02a1b2fffe0c00xy", ""), wrongForm},
      {"DiscoveryOfABridge", kHueServer, hueCommand(114, kPolicedBridge, ""), ""},
      {"AddWithArgument", kHueServer, hueCommand(100, kPolicedBridge, "Lamp"), ""},
      {"RemoveWithArgument", kHueServer, hueCommand(109, kPolicedBridge, "Lamp"), ""},
      {"EndlessArgument", kHueServer, hueCommand(105, kPolicedBridge, std::string(49, 'y').c_str(), 169),
       "an argument that has no end"},
      {"StrayByteAtStart", kHueServer, hueCommand(105, kPolicedBridge, "Lamp", 0), ""},
      {"StrayByteBeforeArgument", kHueServer, hueCommand(105, kPolicedBridge, "Lamp", 119), ""},
      {"StrayByteBehindArgument", kHueServer, hueCommand(105, kPolicedBridge, "Lamp", 169), ""},
      {"StrayByteBehindBridge", kHueServer, hueCommand(105, kPolicedBridge, "Lamp", 219), ""},
      {"StrayByteBehindCommand", kHueServer, hueCommand(105, kPolicedBridge, "Lamp", 224), ""},
      {"StrayByteAtEnd", kHueServer, hueCommand(105, kPolicedBridge, "Lamp", 303), ""},
  };
}

Datagram nestCommand(unsigned code, const std::string& text, std::size_t strayOffset = 256) {
  NestCommand command{};
  command.command = code;
  setText(command.text, text);
  Datagram bytes = bytesOf(command);
  if (strayOffset < bytes.size()) bytes[strayOffset] = 'x';
  return bytes;
}

std::vector<Misdeed> nestMisdeeds() {
  constexpr const char* unused = "bytes of a command that must be zero are not";
  return {
      {"GoodLink", kNestServer, nestCommand(100, "code"), ""},
      {"GoodLinkOfLongestCode", kNestServer, nestCommand(100, std::string(247, 'c')), ""},
      {"GoodUnlink", kNestServer, nestCommand(109, ""), ""},
      {"ShortCommand", kNestServer, Datagram(255), "a datagram of 255 bytes instead of 256"},
      {"LongCommand", kNestServer, Datagram(257), "a datagram of 257 bytes instead of 256"},
      {"ZeroCommand", kNestServer, Datagram(256), "an unknown command: 0"},
      {"UnknownCommand", kNestServer, nestCommand(101, ""), "an unknown command: 101"},
      {"EndlessCode", kNestServer, nestCommand(100, std::string(247, 'c'), 255), unused},
      {"UnlinkWithText", kNestServer, nestCommand(109, "code"), unused},
      {"StrayByteAtStart", kNestServer, nestCommand(109, "", 0), unused},
      {"StrayByteBehindCode", kNestServer, nestCommand(100, "code", 13), unused},
      {"StrayByteAtEnd", kNestServer, nestCommand(109, "", 255), unused},
  };
}

class Policing : public testing::TestWithParam<Misdeed> {};

TEST_P(Policing, ReportsTheMisdeedAndTheExitStatusTellsIt) {
  const Misdeed& misdeed = GetParam();
  Caller caller;
  RunningSim sim;
  caller.send(misdeed.to, misdeed.datagram);
  const bool good = *misdeed.report == '\0';
  EXPECT_EQ(sim.stop(), good ? 0 : 1);
  const std::string begin = "tembra-sim: FAULT FOUND by the " + std::string(misdeed.to.name) + ": " + misdeed.report;
  EXPECT_EQ(sim.program().errors().starts_with(begin), !good) << sim.program().errors();
}

std::string misdeedName(const testing::TestParamInfo<Misdeed>& info) { return info.param.name; }

INSTANTIATE_TEST_SUITE_P(Commands, Policing, testing::ValuesIn(commandMisdeeds()), misdeedName);
INSTANTIATE_TEST_SUITE_P(Notices, Policing, testing::ValuesIn(noticeMisdeeds()), misdeedName);
INSTANTIATE_TEST_SUITE_P(Zigbee, Policing, testing::ValuesIn(zigbeeMisdeeds()), misdeedName);
INSTANTIATE_TEST_SUITE_P(Hue, Policing, testing::ValuesIn(hueMisdeeds()), misdeedName);
INSTANTIATE_TEST_SUITE_P(Nest, Policing, testing::ValuesIn(nestMisdeeds()), misdeedName);

TEST(PolicingTable, IsComplete) {
  EXPECT_EQ(commandMisdeeds().size(), 18U);
  EXPECT_EQ(noticeMisdeeds().size(), 12U);
  EXPECT_EQ(zigbeeMisdeeds().size(), 16U);
  EXPECT_EQ(hueMisdeeds().size(), 26U);
  EXPECT_EQ(nestMisdeeds().size(), 12U);
}

TEST(PolicingCount, StandsInTheStatus) {
  Caller caller;
  RunningSim sim;
  caller.send(kZwaveServer, Datagram(1));
  caller.send(kHaServer, Datagram(1));
  EXPECT_NE(sim.ask("status").text.find("faults found: 2"), std::string::npos);
  EXPECT_EQ(sim.stop(), 1);
}

}  // namespace
}  // namespace tembra::sim::test
