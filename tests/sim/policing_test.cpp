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
  constexpr const char* behind = "bytes behind the record of a notice that must be zero are not";
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
      {"StrayByteBehindNode", kHaServer, strayBehindNode, behind},
      {"StrayByteAtNoticeEnd", kHaServer, strayAtEnd, behind},
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

TEST(PolicingTable, IsComplete) {
  EXPECT_EQ(commandMisdeeds().size(), 18U);
  EXPECT_EQ(noticeMisdeeds().size(), 12U);
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
