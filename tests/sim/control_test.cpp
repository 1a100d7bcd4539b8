// Starting, asking and ending the program.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <csignal>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "support/caller.h"
#include "support/running_sim.h"

namespace tembra::sim::test {
namespace {

Result simulator(std::vector<std::string> arguments) {
  arguments.insert(arguments.begin(), TEMBRA_SIM_PROGRAM);
  return runToEnd(std::move(arguments));
}

TEST(Program, EndsCleanlyOnSignals) {
  for (const int number : {SIGINT, SIGTERM}) {
    RunningSim sim;
    sim.program().signal(number);
    EXPECT_EQ(sim.program().wait(), 0);
    EXPECT_FALSE(std::filesystem::exists(kControl));
    EXPECT_EQ(sim.program().output(), "tembra-sim: ready\n");
    EXPECT_EQ(sim.program().errors(), "");
  }
}

TEST(Program, ListsTheCatalogueWithoutRunning) {
  const Result result = simulator({"devices"});
  EXPECT_EQ(result.status, 0);
  EXPECT_NE(result.output.find("metering-plug"), std::string::npos);
}

TEST(Program, WrongUsageIsStatus2) {
  const std::vector<std::vector<std::string>> usages{
      {},
      {"dance"},
      {"press"},
      {"press", "a", "--fail"},
      {"fault"},
      {"run", "--speed", "0"},
      {"run", "--fault", "x:lost"},
      {"run", "--latency", "-1"},
      {"run", "--nonsense"},
  };
  for (const auto& usage : usages) {
    const Result result = simulator(usage);
    EXPECT_EQ(result.status, 2) << result.errors;
    EXPECT_FALSE(result.errors.empty());
  }
  EXPECT_EQ(simulator({"--help"}).status, 0);
}

TEST(Program, ASecondSimulatorFindsTheAddressTaken) {
  const RunningSim first;
  const Result second = simulator({"run", "--control", "/tmp/other.sock", "--db", "/tmp/other"});
  EXPECT_EQ(second.status, 1);
  EXPECT_EQ(second.errors, "tembra-sim: the Z-Wave server cannot be at 127.255.255.254:8888: Address already in use\n");
}

TEST(ControlSocket, IsForThisUserOnly) {
  const RunningSim sim;
  struct stat status {};
  ASSERT_EQ(stat(kControl, &status), 0);
  EXPECT_EQ(status.st_mode & 0777U, 0600U);
}

TEST(ControlSocket, OfAKilledSimulatorIsTakenOver) {
  {
    RunningSim killed;
    killed.program().signal(SIGKILL);
    killed.program().wait();
  }
  ASSERT_TRUE(std::filesystem::exists(kControl));
  RunningSim sim;
  EXPECT_TRUE(sim.ready()) << sim.program().errors();
  EXPECT_EQ(sim.stop(), 0);
}

TEST(ControlSocket, NeverReplacesAnotherFile) {
  std::ofstream(kControl) << "precious";
  RunningSim sim;
  EXPECT_EQ(sim.program().wait(), 1);
  EXPECT_TRUE(std::filesystem::is_regular_file(kControl));
}

TEST(Requests, WithoutASimulatorAreRefusedInOneSentence) {
  const Result result = simulator({"status"});
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.errors, "tembra-sim: no simulator listens at /tmp/tembra-sim.sock: No such file or directory\n");
}

TEST(Requests, TellTheirOutcomeByExitStatusAndText) {
  Caller caller;
  const RunningSim sim;
  EXPECT_EQ(simulator({"press", "siren"}).status, 1);
  caller.add();
  const Result press = simulator({"press", "siren"});
  EXPECT_EQ(press.status, 0) << press.errors;
  EXPECT_EQ(press.output, "siren joins as node 2\n");
  sim.awaitIdle();
  const Result status = simulator({"status"});
  EXPECT_NE(status.output.find("node 2  siren"), std::string::npos);
  EXPECT_NE(status.output.find("1 received, 3 sent"), std::string::npos);
  EXPECT_EQ(simulator({"fault", "joined:lost"}).status, 0);
  EXPECT_EQ(simulator({"fault", "joined:odd"}).status, 1);
  caller.add();
  EXPECT_EQ(simulator({"press", "--fail"}).output, "adding fails\n");
  EXPECT_EQ(simulator({"stop"}).status, 0);
}

TEST(Requests, UnknownWordsAreRefused) {
  const RunningSim sim;
  EXPECT_EQ(sim.ask("dance").text, "the simulator knows no request \"dance\"");
}

TEST(Timeline, SaysWhoSaysWhatToWhom) {
  Caller caller;
  RunningSim sim({"--timeline"});
  caller.add();
  sim.tell("press siren");
  sim.awaitIdle();
  sim.stop();
  const std::string output = sim.program().output();
  for (const char* line :
       {"s  library -> Z-Wave server   add a device\n", "s  siren -> Z-Wave server   button pressed\n",
        "s  Z-Wave server -> library   node 2 joined (1036 bytes)\n",
        "s  Z-Wave server -> library   node 2 described in full (1036 bytes)\n"}) {
    EXPECT_NE(output.find(line), std::string::npos) << output;
  }
}

}  // namespace
}  // namespace tembra::sim::test
