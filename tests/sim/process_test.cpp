// Servers that are killed and started again, or left out from the start.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "sim/core/sockets.h"
#include "support/caller.h"
#include "support/running_sim.h"

namespace tembra::sim::test {
namespace {

constexpr const char* kFirstBridge = "02a1b2fffe0c0001";

TEST(KilledServer, SaysAndHearsNothing) {
  Caller caller;
  const RunningSim sim({"--fault", "joined:late=3600000"});
  caller.add();
  sim.tell("press siren");
  EXPECT_EQ(sim.ask("kill zwave").text, "the Z-Wave server is dead");
  caller.remove();
  EXPECT_EQ(sim.ask("press siren").text, "the Z-Wave server is not running");
  EXPECT_NE(sim.ask("status").text.find("Z-Wave server: not running\n"), std::string::npos);
  EXPECT_EQ(sim.ask("start zwave").text, "the Z-Wave server is running again");
  EXPECT_EQ(sim.ask("press siren").text, "nobody listens: the Z-Wave server is neither adding nor removing");
  EXPECT_EQ(summary(caller.heardSoFar()), "");
}

TEST(KilledServer, ForgetsItsAnswersButNotTheNetwork) {
  Caller caller;
  const RunningSim sim;
  caller.zigbeeAdd();
  sim.tell("press zb-plug");
  sim.awaitIdle();
  EXPECT_EQ(statuses(caller.heardSoFar()), "444/1 444/6 444/10");
  sim.tell("kill zigbee");
  sim.tell("start zigbee");
  caller.zigbeeRemove();
  sim.tell("press zb-plug");
  sim.awaitIdle();
  EXPECT_EQ(statuses(caller.heardSoFar()), "444/2");
}

TEST(KilledServer, OfTheBridgesWaitsForNoButtonAnyMore) {
  Caller caller;
  const RunningSim sim({"--bridges", "3"});
  sim.tell("bridges 5");
  caller.hue(100, kFirstBridge);
  sim.tell("kill hue");
  EXPECT_EQ(sim.ask("press hue-button").text, "the Hue server is not running");
  sim.tell("start hue");
  sim.tell("press hue-button");
  EXPECT_FALSE(kDatabase.keySet().contains("1")) << "nobody was waiting";
  caller.hue(114);
  EXPECT_EQ(caller.hear().as<HueAnswer>().count, 5) << "the bridges are where they were";
}

TEST(KilledServer, OfTheAccountKeepsTheAccount) {
  Caller caller;
  const RunningSim sim;
  caller.nest(100, "code");
  EXPECT_EQ(caller.hear().as<NestAnswer>().command, 121);
  sim.tell("kill nest");
  EXPECT_TRUE(std::filesystem::exists("/tmp/Authcode"));
  sim.tell("start nest");
  EXPECT_NE(sim.ask("status").text.find("Nest server: idle, linked\n"), std::string::npos);
}

TEST(KilledServer, IsOneOfFourAndRunsOrNot) {
  const RunningSim sim;
  EXPECT_EQ(sim.ask("kill ha").text, "no server \"ha\" can be killed; zwave, zigbee, hue and nest can");
  EXPECT_EQ(sim.ask("start ha").text, "no server \"ha\" can be started; zwave, zigbee, hue and nest can");
  for (const std::string server : {"zwave", "zigbee", "hue", "nest"}) {
    EXPECT_FALSE(sim.ask("start " + server).done) << "it is running";
    EXPECT_TRUE(sim.ask("kill " + server).done);
    EXPECT_FALSE(sim.ask("kill " + server).done) << "it is dead";
    EXPECT_TRUE(sim.ask("start " + server).done);
  }
}

TEST(KilledServer, IsKilledAndStartedFromTheCommandLine) {
  const RunningSim sim;
  EXPECT_EQ(simulator({"kill", "hue"}).output, "the Hue server is dead\n");
  EXPECT_EQ(simulator({"kill", "hue"}).errors, "tembra-sim: the Hue server is not running\n");
  EXPECT_EQ(simulator({"start", "hue"}).output, "the Hue server is running again\n");
  EXPECT_EQ(simulator({"kill"}).status, 2);
}

TEST(ServerLeftOut, LeavesItsAddressToAnother) {
  RunningSim sim({"--without", "zwave", "nest"});
  const Descriptor another = boundSocket(kZwaveServer);
  const std::string status = sim.ask("status").text;
  EXPECT_NE(status.find("Z-Wave server: not running\n"), std::string::npos) << status;
  EXPECT_NE(status.find("ZigBee server: idle\n"), std::string::npos) << status;
  EXPECT_NE(status.find("Nest server: not running\n"), std::string::npos) << status;
  EXPECT_EQ(sim.ask("press siren").text, "the Z-Wave server is not running");
  EXPECT_EQ(sim.ask("start zwave").text, "the Z-Wave server cannot be at 127.255.255.254:8888: Address already in use");
  EXPECT_EQ(sim.stop(), 0);
}

TEST(ServerLeftOut, CanBeStartedLater) {
  Caller caller;
  RunningSim sim({"--without", "nest", "--without", "hue"});
  sim.tell("start nest");
  caller.nest(109);
  EXPECT_EQ(caller.hear().as<NestAnswer>().command, 122);
  EXPECT_FALSE(sim.ask("kill hue").done) << "it was left out";
}

TEST(ServerLeftOut, IsOneOfFour) {
  for (const std::string server : {"ha", "ZWAVE", ""}) {
    EXPECT_EQ(simulator({"run", "--without", server}).status, 2) << server;
  }
}

}  // namespace
}  // namespace tembra::sim::test
