#include "sim/answers/fault.h"

#include <gtest/gtest.h>

#include <cctype>
#include <chrono>
#include <ostream>
#include <stdexcept>
#include <string>
#include <vector>

#include "support/caller.h"
#include "support/running_sim.h"

namespace tembra::sim::test {
namespace {

TEST(FaultText, IsReadWithItsDefaults) {
  const Fault plain = parseFault("joined:lost");
  EXPECT_EQ(plain.message, "joined");
  EXPECT_EQ(plain.kind, FaultKind::kLost);
  EXPECT_EQ(plain.remaining, 1);
  const Fault full = parseFault("*:late=500:3");
  EXPECT_EQ(full.message, "*");
  EXPECT_EQ(full.value, 500);
  EXPECT_EQ(full.remaining, 3);
  EXPECT_EQ(parseFault("info:code").value, Fault::kFailure);
  EXPECT_EQ(parseFault("info:code=7").value, 7);
  EXPECT_EQ(parseFault("closing:silence:always").remaining, Fault::kAlways);
}

TEST(FaultText, MistakesAreRefused) {
  for (const char* text : {"", "joined", "joined:", "lost", "nothing:lost", "joined:broken", "joined:lost=1",
                           "joined:late", "joined:late=x", "joined:late=-1", "joined:short", "joined:short=5000",
                           "joined:code=256", "joined:lost:x", "joined:lost:1:2"}) {
    EXPECT_THROW(parseFault(text), std::invalid_argument) << text;
  }
}

TEST(FaultList, HitsAsOftenAsItWasTold) {
  FaultList faults;
  faults.add(parseFault("joined:lost:2"));
  EXPECT_FALSE(faults.take("info").lost);
  EXPECT_TRUE(faults.take("joined").lost);
  EXPECT_TRUE(faults.take("joined").lost);
  EXPECT_FALSE(faults.take("joined").lost);
  EXPECT_EQ(faults.count(), 0U);
}

struct FaultRow {
  const char* fault;
  const char* whenAdding;
  const char* whenRemoving;
};

void PrintTo(const FaultRow& row, std::ostream* stream) { *stream << row.fault; }

// Length and node byte of the answers to an add and to the removal of a device of node 2.
constexpr FaultRow kRows[] = {
    {"joined:lost", "1036/2 1036/2", "1036/2 1036/2"},
    {"identity:lost", "1036/2 1036/2", "1036/2 1036/2"},
    {"joined:twice", "1036/2 1036/2 1036/2 1036/2", "1036/2 1036/2"},
    {"identity:short=1", "1036/2 1/2 1036/2", "1036/2 1036/2"},
    {"info:short=0", "1036/2 1036/2 0/0", "1036/2 1036/2"},
    {"info:short=4096", "1036/2 1036/2 1036/2", "1036/2 1036/2"},
    {"joined:code=255", "1036/255", "1036/2 1036/2"},
    {"identity:code", "1036/2 1036/255", "1036/2 1036/2"},
    {"joined:code=0", "1036/0 1036/2 1036/2", "1036/2 1036/2"},
    {"identity:code=0", "1036/2 1036/0", "1036/2 1036/2"},
    {"identity:code=9", "1036/2 1036/9 1036/2", "1036/2 1036/2"},
    {"info:code", "1036/2 1036/2 1036/255", "1036/2 1036/2"},
    {"identity:silence", "1036/2", "1036/2 1036/2"},
    {"joined:silence", "", "1036/2 1036/2"},
    {"removed:lost", "1036/2 1036/2 1036/2", "1036/2"},
    {"removed:code=0", "1036/2 1036/2 1036/2", "1036/0"},
    {"removed:code", "1036/2 1036/2 1036/2", "1036/255"},
    {"removed:code=9", "1036/2 1036/2 1036/2", "1036/9 1036/2"},
    {"closing:lost", "1036/2 1036/2 1036/2", "1036/2"},
    {"closing:twice", "1036/2 1036/2 1036/2", "1036/2 1036/2 1036/2"},
    {"removed:silence", "1036/2 1036/2 1036/2", ""},
    {"*:lost:2", "1036/2", "1036/2 1036/2"},
    {"*:lost:always", "", ""},
    {"*:short=10:always", "10/2 10/2 10/2", "10/2 10/2"},
};

class FaultyServer : public testing::TestWithParam<FaultRow> {};

std::string answersTo(Caller& caller, const RunningSim& sim, int controllerCommand) {
  caller.command(1, controllerCommand);
  sim.tell("press siren");
  sim.awaitIdle();
  return summary(caller.heardSoFar());
}

TEST_P(FaultyServer, DistortsItsAnswers) {
  Caller caller;
  const RunningSim sim({"--fault", GetParam().fault});
  EXPECT_EQ(answersTo(caller, sim, 1), GetParam().whenAdding);
  EXPECT_EQ(answersTo(caller, sim, 4), GetParam().whenRemoving);
}

std::string rowName(const testing::TestParamInfo<FaultRow>& info) {
  std::string name = info.param.fault;
  for (char& letter : name) {
    if (std::isalnum(static_cast<unsigned char>(letter)) == 0) letter = '_';
  }
  return name + "_" + std::to_string(info.index);
}

INSTANTIATE_TEST_SUITE_P(EveryFault, FaultyServer, testing::ValuesIn(kRows), rowName);

// Length and status of the answers to an add and to the removal of a ZigBee device.
constexpr FaultRow kZigbeeRows[] = {
    {"found:lost", "444/6 444/10", "444/2"},
    {"getting:twice", "444/1 444/6 444/6 444/10", "444/2"},
    {"complete:short=11", "444/1 444/6 11/10", "444/2"},
    {"complete:short=0", "444/1 444/6 0/0", "444/2"},
    {"found:code", "444/11", "444/2"},
    {"found:code=2", "444/2", "444/2"},
    {"getting:code=3", "444/1 444/3 444/10", "444/2"},
    {"getting:code=12", "444/1 444/12", "444/2"},
    {"complete:code", "444/1 444/6 444/11", "444/2"},
    {"getting:silence", "444/1", "444/2"},
    {"left:code", "444/1 444/6 444/10", "444/12"},
    {"left:code=5", "444/1 444/6 444/10", "444/5"},
    {"left:lost", "444/1 444/6 444/10", ""},
    {"left:twice", "444/1 444/6 444/10", "444/2 444/2"},
    {"joined:lost", "444/1 444/6 444/10", "444/2"},
    {"found:reordered", "444/6 444/1 444/10", "444/2"},
    {"getting:reordered", "444/1 444/10 444/6", "444/2"},
    {"complete:reordered", "444/1 444/6 444/10", "444/2"},
    {"left:reordered", "444/1 444/6 444/10", "444/2"},
    {"getting:foreign", "444/1 444/6 444/6 444/10", "444/2"},
    {"left:foreign:always", "444/1 444/6 444/10", "444/2 444/2"},
    {"*:lost:always", "", ""},
};

class FaultyZigbeeServer : public testing::TestWithParam<FaultRow> {};

std::string zigbeeAnswers(Caller& caller, const RunningSim& sim) {
  sim.tell("press zb-plug");
  sim.awaitIdle();
  return statuses(caller.heardSoFar());
}

TEST_P(FaultyZigbeeServer, DistortsItsAnswers) {
  Caller caller;
  const RunningSim sim({"--fault", GetParam().fault});
  caller.zigbeeAdd();
  EXPECT_EQ(zigbeeAnswers(caller, sim), GetParam().whenAdding);
  caller.zigbeeRemove();
  EXPECT_EQ(zigbeeAnswers(caller, sim), GetParam().whenRemoving);
}

INSTANTIATE_TEST_SUITE_P(EveryFault, FaultyZigbeeServer, testing::ValuesIn(kZigbeeRows), rowName);

TEST(LateAnswer, ComesLaterInSimulatedTime) {
  using Clock = std::chrono::steady_clock;
  Caller caller;
  const RunningSim sim({"--speed", "100", "--fault", "identity:late=8000"});
  caller.add();
  const Clock::time_point pressed = Clock::now();
  sim.tell("press siren");
  EXPECT_EQ(caller.hear().block.nodeId, 2);
  EXPECT_EQ(caller.hear().block.nodeId, 2);
  EXPECT_GE(Clock::now() - pressed, std::chrono::milliseconds(80));
}

// Faults are drawn when an answer's turn would have come: the one that changed places keeps its own.
TEST(ReorderedAnswer, KeepsItsOtherFaults) {
  Caller caller;
  const RunningSim sim({"--fault", "found:reordered", "--fault", "found:short=11", "--fault", "getting:code=3"});
  caller.zigbeeAdd();
  EXPECT_EQ(zigbeeAnswers(caller, sim), "444/3 11/1 444/10");
}

TEST(ForeignAnswer, ComesFromAStrangerBeforeTheServersOwn) {
  Caller caller;
  const RunningSim sim({"--fault", "joined:foreign", "--fault", "identity:foreign", "--fault", "identity:lost"});
  caller.add();
  sim.tell("press siren");
  sim.awaitIdle();
  std::vector<std::string> senders;
  for (const Heard& heard : caller.heardSoFar()) senders.push_back(heard.sender);
  EXPECT_EQ(senders, (std::vector<std::string>{"127.0.0.66", "127.255.255.254", "127.0.0.66", "127.255.255.254"}));
}

TEST(FaultsAtRunTime, AreSetAndCleared) {
  Caller caller;
  const RunningSim sim;
  sim.tell("fault *:lost:always");
  EXPECT_EQ(answersTo(caller, sim, 1), "");
  sim.tell("fault none");
  EXPECT_EQ(answersTo(caller, sim, 1), "1036/2 1036/2 1036/2");
  EXPECT_FALSE(sim.ask("fault joined:exploded").done);
}

}  // namespace
}  // namespace tembra::sim::test
