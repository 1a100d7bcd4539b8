// Recordings: what they hold stands in the file at once, and what cannot be recorded is refused.
#include <gtest/gtest.h>

#include <csignal>
#include <fstream>
#include <iterator>
#include <string>

#include "support/caller.h"
#include "support/running_sim.h"

namespace tembra::sim::test {
namespace {

std::string contentsOf(const char* file) {
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

TEST(Recording, HoldsDatagramsAndTheTimelineWhateverEndsTheSimulator) {
  Caller caller;
  RunningSim sim({"--record", "/tmp/recording.pcapng"});
  caller.nest(100, "the code that is told");
  EXPECT_EQ(caller.hear().as<NestAnswer>().command, 121);
  sim.tell("status");
  sim.program().signal(SIGKILL);
  sim.program().exitStatus();
  const std::string recording = contentsOf("/tmp/recording.pcapng");
  EXPECT_EQ(recording.find("\x0a\x0d\x0d\x0a"), 0U);
  EXPECT_NE(recording.find("the code that is told"), std::string::npos);
  EXPECT_NE(recording.find("library -> Nest server   link the account"), std::string::npos);
  EXPECT_NE(recording.find("Nest server -> library   command 121, status 0 (12 bytes)"), std::string::npos);
}

TEST(Recording, HoldsWhatIsSaidAfterTheLastDatagram) {
  RunningSim sim({"--record", "/tmp/recording.pcapng"});
  sim.tell("press hue-button");
  EXPECT_EQ(sim.stop(), 0);
  EXPECT_NE(contentsOf("/tmp/recording.pcapng").find("hue-button -> Hue server   button pressed"), std::string::npos);
}

TEST(Recording, IsRefusedWhereItCannotBeWritten) {
  const kit::Ended ended = simulator({"run", "--record", "/tmp/no-folder/recording"});
  EXPECT_EQ(ended.status, 1);
  EXPECT_EQ(ended.sentence(), "tembra-sim: cannot write the recording /tmp/no-folder/recording");
}

}  // namespace
}  // namespace tembra::sim::test
