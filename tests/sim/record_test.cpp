// Recordings: what they hold stands in the file at once, and what cannot be recorded is refused.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <csignal>
#include <fstream>
#include <iterator>
#include <string>

#include "platform/descriptor.h"
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
  const std::pair<const char*, std::string> files[] = {
      {"/tmp/no-folder/recording", "/tmp/no-folder/recording (No such file or directory)"},
      {"/dev/full", "/dev/full (No space left on device)"}};
  for (const auto& [file, sentence] : files) {
    const kit::Ended ended = simulator({"run", "--record", file});
    EXPECT_EQ(ended.status, 1);
    EXPECT_EQ(ended.sentence(), "tembra-sim: cannot write the recording " + sentence);
  }
}

/// A simulator whose recording begins well: it is a pipe, which takes nothing more when nobody reads it.
struct BrokenRecording {
  BrokenRecording() { reader.reset(); }

  int pipe = mkfifo("/tmp/recording", 0600);
  Descriptor reader{open("/tmp/recording", O_RDONLY | O_NONBLOCK | O_CLOEXEC)};
  RunningSim sim{{"--record", "/tmp/recording"}};
};

constexpr char kBroken[] = "tembra-sim: cannot write the recording /tmp/recording (Broken pipe)\n";

TEST(Recording, SaysOnceThatItCannotBeWrittenAnyMore) {
  Caller caller;
  BrokenRecording broken;
  for (int i = 0; i < 2; ++i) {
    caller.nest(100, "a code");
    EXPECT_EQ(caller.hear().as<NestAnswer>().command, 121);
  }
  EXPECT_EQ(broken.sim.stop(), 1);
  EXPECT_EQ(broken.sim.program().errors(), kBroken);
}

TEST(Recording, SaysThatItsEndCannotBeWritten) {
  BrokenRecording broken;
  broken.sim.tell("press hue-button");
  EXPECT_EQ(broken.sim.stop(), 1);
  EXPECT_EQ(broken.sim.program().errors(), kBroken);
}

}  // namespace
}  // namespace tembra::sim::test
