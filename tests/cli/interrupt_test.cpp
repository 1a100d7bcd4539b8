// Whatever ends the program while an operation runs, both radios are told to cancel first.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <csignal>
#include <cstdlib>
#include <ostream>

#include "support/files.h"
#include "support/sim_router.h"
#include "support/terminal.h"
#include "support/udp_listener.h"

namespace tembra::test {
namespace {

struct InterruptCase {
  const char* name;
  std::vector<std::string> arguments;
  int signal;
  const char* begins;
};

void PrintTo(const InterruptCase& row, std::ostream* out) { *out << row.name; }

const InterruptCase kInterruptCases[] = {
    {"CtrlCWhileAdding", {"add"}, SIGINT, "add a device"},
    {"CtrlCWhileRemoving", {"remove", "--yes"}, SIGINT, "remove a device"},
    {"KillWhileAdding", {"add"}, SIGTERM, "add a device"},
    {"HangUpWhileRemoving", {"remove", "--yes"}, SIGHUP, "remove a device"},
};

class InterruptTest : public testing::TestWithParam<InterruptCase> {};

TEST_P(InterruptTest, CancelsOnBothRadios) {
  SimRouter router;
  Program program(assocCommand(GetParam().arguments));
  router.waitForBothRadiosToHear(GetParam().begins);
  program.signal(GetParam().signal);
  const Ended ended = program.end();
  EXPECT_EQ(ended.status, 130);
  EXPECT_EQ(ended.sentence(), "tembra-assoc: interrupted.");
  router.waitForBothRadiosToHear("cancel");
  const Told told = router.stop();
  const std::vector<std::string> expected = {GetParam().begins, "cancel"};
  EXPECT_EQ(told.zigbee, expected);
  EXPECT_EQ(told.zwave, expected);
}

INSTANTIATE_TEST_SUITE_P(Signals, InterruptTest, testing::ValuesIn(kInterruptCases),
                         [](const auto& test) { return test.param.name; });

TEST(Interrupt, ByAReaderThatGoesAwayCancelsAsWell) {
  SimRouter router;
  Program program(assocCommand({"add", "--json", "--yes"}));
  program.waitFor("waiting");
  program.stopReading();
  EXPECT_EQ(Program({TEMBRA_SIM_PROGRAM, "press", "siren"}).end().status, 0);
  EXPECT_EQ(program.end().status, 1);
  router.waitForBothRadiosToHear("cancel");
  router.stop();
}

// The library waits for the database's lock without end; the user need not.
TEST(Interrupt, EndsAClassificationThatWaitsForALockedDatabase) {
  SimRouter router({"--fault", "info:late=300"});
  Program program(assocCommand({"add"}));
  router.pressOnAdd("siren");
  program.waitFor("Reading the device's description.");
  const OpenDatabase lock;
  router.waitFor("described in full");
  program.signal(SIGINT);
  EXPECT_EQ(program.end().status, 130);
  router.waitForBothRadiosToHear("cancel");
  router.stop();
}

TEST(Interrupt, EndsANamingThatWaitsForALockedDatabase) {
  SimRouter router;
  Terminal terminal(assocCommand({"add"}));
  router.pressOnAdd("metering-plug");
  terminal.waitFor("Number or name");
  const OpenDatabase lock;
  terminal.type("1\r");
  terminal.waitFor("Name (");
  terminal.type("\r");
  terminal.waitFor("Place (");
  terminal.type("\r");
  terminal.waitFor("Storing the device");
  terminal.type("\x03");
  EXPECT_EQ(terminal.end(), 130);
  router.waitForBothRadiosToHear("cancel");
  router.stop();
}

TEST(Interrupt, EndsAnOpeningThatWaitsForACommandOfTheRouter) {
  ASSERT_EQ(mkfifo("/tmp/begun", 0600), 0);
  writeFile("/tmp/nvram_get", "#!/bin/sh\necho $$ >/tmp/begun\nexec sleep 1000\n");
  ASSERT_EQ(chmod("/tmp/nvram_get", 0700), 0);
  setenv("PATH", (std::string("/tmp:") + std::getenv("PATH")).c_str(), 1);
  const ZigbeeListener zigbee;
  Program program(assocCommand({"cancel"}));
  const pid_t command = std::stoi(readFile("/tmp/begun"));
  program.signal(SIGINT);
  EXPECT_EQ(program.exitStatus(), 130);
  kill(command, SIGKILL);
}

}  // namespace
}  // namespace tembra::test
