// Starting, asking and ending the program.
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/stat.h>

#include <csignal>
#include <filesystem>
#include <fstream>
#include <string>
#include <thread>
#include <vector>

#include "platform/descriptor.h"
#include "sim/control/control_path.h"
#include "support/caller.h"
#include "support/running_sim.h"

namespace tembra::sim::test {
namespace {

TEST(Program, EndsCleanlyOnSignals) {
  for (const int number : {SIGINT, SIGTERM}) {
    RunningSim sim;
    sim.program().signal(number);
    EXPECT_EQ(sim.program().end().status, 0);
    EXPECT_FALSE(std::filesystem::exists(kControl));
    EXPECT_EQ(sim.program().output(), "tembra-sim: ready\n");
    EXPECT_EQ(sim.program().errors(), "");
  }
}

TEST(Program, ListsTheCatalogueWithoutRunning) {
  const kit::Ended result = simulator({"devices"});
  EXPECT_EQ(result.status, 0);
  for (const char* name : {"metering-plug", "zb-colour-lamp", "hue-button"}) {
    EXPECT_NE(result.output.find(name), std::string::npos) << name;
  }
}

TEST(Program, WrongUsageIsStatus2) {
  const std::vector<std::vector<std::string>> usages{
      {},
      {"dance"},
      {"press"},
      {"press", "a", "--fail"},
      {"answer"},
      {"bridges"},
      {"run", "--bridges", "51"},
      {"fault"},
      {"run", "--speed", "0"},
      {"run", "--fault", "x:lost"},
      {"run", "--latency", "-1"},
      {"run", "--nonsense"},
  };
  for (const auto& usage : usages) {
    const kit::Ended result = simulator(usage);
    EXPECT_EQ(result.status, 2) << result.errors;
    EXPECT_EQ(result.errors.rfind("tembra-sim: ", 0), 0U) << result.errors;
  }
  EXPECT_EQ(simulator({"--help"}).status, 0);
}

TEST(Program, ASecondSimulatorFindsTheAddressTaken) {
  const RunningSim first;
  const kit::Ended second = simulator({"run", "--control", "/tmp/other.sock", "--db", "/tmp/other"});
  EXPECT_EQ(second.status, 1);
  EXPECT_EQ(second.errors, "tembra-sim: the Z-Wave server cannot be at 127.255.255.254:8888: Address already in use\n");
}

TEST(ControlSocket, IsForThisUserOnly) {
  const RunningSim sim;
  struct stat status {};
  ASSERT_EQ(stat(kControl.c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777U, 0600U);
}

TEST(ControlSocket, IsInAFolderForThisUserOnly) {
  const RunningSim sim;
  struct stat status {};
  ASSERT_EQ(stat(std::filesystem::path(kControl).parent_path().c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777U, 0700U);
}

// Whoever may enter the folder may put a socket of its own there.
void makeOpenFolder(const std::filesystem::path& folder) {
  std::filesystem::create_directory(folder);
  std::filesystem::permissions(folder, std::filesystem::perms::all);
}
void makeLink(const std::filesystem::path& folder) {
  std::filesystem::create_directory("/tmp/elsewhere");
  std::filesystem::permissions("/tmp/elsewhere", std::filesystem::perms::owner_all);
  std::filesystem::create_symlink("/tmp/elsewhere", folder);
}

TEST(ControlSocket, IsNotSoughtInAFolderThatIsNotThisUsersAlone) {
  const std::filesystem::path folder = std::filesystem::path(kControl).parent_path();
  for (const auto make : {makeOpenFolder, makeLink}) {
    std::filesystem::remove_all(folder);
    make(folder);
    for (const auto* command : {"run", "status"}) {
      const kit::Ended result = simulator({command});
      EXPECT_EQ(result.status, 1);
      EXPECT_EQ(result.errors, "tembra-sim: " + folder.string() +
                                   " is not a folder for you alone; choose another control socket with --control\n");
    }
  }
}

TEST(ControlSocket, OfAKilledSimulatorIsTakenOver) {
  {
    RunningSim killed;
    killed.program().signal(SIGKILL);
    killed.program().end();
  }
  ASSERT_TRUE(std::filesystem::exists(kControl));
  RunningSim sim;
  EXPECT_TRUE(sim.ready()) << sim.program().errors();
  EXPECT_EQ(sim.stop(), 0);
}

TEST(ControlSocket, NeverReplacesAnotherFile) {
  makeControlFolder(kControl);
  std::ofstream(kControl) << "precious";
  RunningSim sim;
  EXPECT_EQ(sim.program().end().status, 1);
  EXPECT_TRUE(std::filesystem::is_regular_file(kControl));
}

TEST(Requests, WithoutASimulatorAreRefusedInOneSentence) {
  const kit::Ended result = simulator({"status"});
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.errors, "tembra-sim: no simulator listens at " + kControl + ": No such file or directory\n");
}

TEST(Requests, TellTheirOutcomeByExitStatusAndText) {
  Caller caller;
  const RunningSim sim;
  EXPECT_EQ(simulator({"press", "siren"}).status, 1);
  caller.add();
  const kit::Ended press = simulator({"press", "siren"});
  EXPECT_EQ(press.status, 0) << press.errors;
  EXPECT_EQ(press.output, "siren joins as node 2\n");
  sim.awaitIdle();
  const kit::Ended status = simulator({"status"});
  EXPECT_NE(status.output.find("node 2  siren"), std::string::npos);
  EXPECT_NE(status.output.find("1 received, 3 sent"), std::string::npos);
  EXPECT_EQ(simulator({"fault", "joined:lost"}).status, 0);
  EXPECT_EQ(simulator({"fault", "joined:odd"}).status, 1);
  caller.add();
  EXPECT_EQ(simulator({"press", "--fail"}).output, "adding fails\n");
  EXPECT_EQ(simulator({"stop"}).status, 0);
}

TEST(Requests, ReachTheServersOfTheOtherDevices) {
  Caller caller;
  const RunningSim sim;
  EXPECT_EQ(simulator({"answer", "nest", "124", "-1"}).output, "command 124, status -1\n");
  EXPECT_EQ(simulator({"answer", "zigbee", "10", "zb-plug"}).output, "status 10 of address 0xfffe\n");
  EXPECT_EQ(simulator({"bridges", "2"}).output, "bridges: 2\n");
  EXPECT_EQ(simulator({"bridges", "51"}).errors, "tembra-sim: \"51\" is not a number from 0 to 50\n");
  EXPECT_EQ(simulator({"press", "hue-button"}).status, 0);
  caller.zigbeeAdd();
  EXPECT_EQ(simulator({"press", "--fail=zigbee"}).output, "adding fails\n");
  sim.awaitIdle();
  EXPECT_EQ(caller.heardSoFar().size(), 3U);
}

TEST(Requests, StatusNamesEveryServerAndDevice) {
  Caller caller;
  const RunningSim sim;
  caller.zigbeeAdd();
  sim.tell("press zb-plug");
  sim.awaitIdle();
  caller.zigbeeRemove();
  caller.hue(100, "02a1b2fffe0c0001");
  caller.nest(100, "code");
  const std::string status = sim.ask("status").text;
  for (const char* line :
       {"Z-Wave server: idle\n", "ZigBee server: removing\n", "Hue server: waiting for the link button\n",
        "Nest server: answering, linked\n", "ZigBee devices joined: 1\n", "  address 0x1a01  zb-plug\n"}) {
    EXPECT_NE(status.find(line), std::string::npos) << status;
  }
}

// Somebody else may have bound the path.
TEST(Requests, ShowAnAnswerWithoutWhatSteersATerminal) {
  const Descriptor listener(socket(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0));
  const sockaddr_un address = controlAddress("/tmp/foreign.sock");
  ASSERT_EQ(bind(listener.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
  ASSERT_EQ(listen(listener.get(), 2), 0);
  std::thread stranger([&listener] {
    for (const std::string answer : {"+one\n\x1b[2Jtwo\xc2\x9b", "-no\n\x9bway"}) {
      const Descriptor client(accept(listener.get(), nullptr, nullptr));
      char request[64];
      recv(client.get(), request, sizeof request, 0);
      send(client.get(), answer.data(), answer.size(), MSG_NOSIGNAL);
    }
  });
  EXPECT_EQ(simulator({"status", "--control", "/tmp/foreign.sock"}).output, "one\n?[2Jtwo?\n");
  EXPECT_EQ(simulator({"status", "--control", "/tmp/foreign.sock"}).errors, "tembra-sim: no??way\n");
  stranger.join();
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
