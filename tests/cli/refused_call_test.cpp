// The system refuses the library something: one sentence says so at once, and the exit status is the right one.
#include <gtest/gtest.h>

#include <ostream>

#include "support/sim_router.h"
#include "support/udp_listener.h"

namespace tembra::test {
namespace {

struct RefusedCall {
  const char* name;
  const char* call;
  std::vector<std::string> arguments;
  const char* sentence;
};

void PrintTo(const RefusedCall& row, std::ostream* out) { *out << row.name; }

constexpr char kNoSocket[] = "127.255.255.4:8888 cannot be opened: Too many open files.";
constexpr char kNotSent[] = "nothing can be sent (Operation not permitted).";
constexpr char kNoThread[] = "no thread can be started (Resource temporarily unavailable).";
constexpr char kDeaf[] = "the library has no thread to receive with (Resource temporarily unavailable).";

const RefusedCall kNoConnections[] = {
    {"SocketOfAnAdd", "socket", {"add", "--yes"}, kNoSocket},
    {"SocketOfAWatch", "socket", {"watch"}, kNoSocket},
    {"Priority", "setsockopt", {"watch"}, "127.255.255.4:8888 cannot be opened: Operation not permitted."},
    {"Address", "bind", {"watch"}, "127.255.255.4:8888 cannot be opened: Permission denied."},
    {"OwnThread", "own-thread", {"watch"}, kNoThread},
    {"ReceiveThreadOfAWatch", "receive-thread", {"watch", "--json"}, kDeaf},
    {"ReceiveThreadOfAnAdd", "receive-thread", {"add", "--yes"}, kDeaf},
    {"ReceiveThreadOfAHueCommand", "receive-thread", {"hue", "discover"}, kDeaf},
    {"SendingOfAnAdd", "sendto", {"add", "--yes"}, kNotSent},
    {"SendingOfARemoval", "sendto", {"remove", "--yes"}, kNotSent},
    {"SendingOfACancel", "sendto", {"cancel"}, kNotSent},
    {"SendingOfAReset", "sendto", {"reset", "zwave", "--yes"}, kNotSent},
    {"SendingOfAHueCommand", "sendto", {"hue", "discover"}, kNotSent},
    {"SendingOfANestCommand", "sendto", {"nest", "unlink", "--yes"}, kNotSent},
};

class RefusedCallTest : public testing::TestWithParam<RefusedCall> {};

TEST_P(RefusedCallTest, EndsTheCommandWithoutAConnection) {
  const SimRouter router;
  const Ended ended = Program(assocCommand(GetParam().arguments), bentCalls(GetParam().call)).end();
  EXPECT_EQ(ended.status, 3);
  EXPECT_EQ(ended.errors, "tembra-assoc: no connection: " + std::string(GetParam().sentence) + "\n");
  EXPECT_EQ(ended.output, "");
}

INSTANTIATE_TEST_SUITE_P(Of, RefusedCallTest, testing::ValuesIn(kNoConnections),
                         [](const auto& test) { return test.param.name; });

TEST(HueList, WithoutAThreadIsToldSo) {
  const Ended list = Program(assocCommand({"hue", "list"}), bentCalls("own-thread")).end();
  EXPECT_EQ(list.status, 1);
  EXPECT_EQ(list.sentence(), std::string("tembra-assoc: ") + kNoThread);
}

TEST(Add, WhoseDeviceCannotBeHandedOverSaysWhy) {
  SimRouter router;
  Program add(assocCommand({"add", "--yes"}), bentCalls("sendto-home"));
  router.pressOnAdd("siren");
  const Ended added = add.end();
  EXPECT_EQ(added.status, 1);
  EXPECT_EQ(added.sentence(),
            "tembra-assoc: the device could not be handed to the home-automation server (No buffer space available).");
  EXPECT_EQ(added.errors.find("sendto error"), std::string::npos) << added.errors;
}

// The shell's own complaint would stand in the midst of ours.
TEST(MissingCommand, OfTheRouterIsToldInOneSentenceAndDoesNoHarm) {
  const UdpListener zwave("127.255.255.254", 8888);
  const Ended cancelled = Program(assocCommand({"cancel", "--json"}), {{"PATH", "/usr/bin:/bin"}}).end();
  EXPECT_EQ(cancelled.status, 0);
  EXPECT_EQ(cancelled.errors,
            "tembra-assoc: the router's command nvram_get cannot be run (not found), so the router counts as number 0 "
            "of its mesh.\n");
  EXPECT_EQ(cancelled.output, "");
}

TEST(StandardError, KeepsTheRoutersLogWhereItIsWrittenThere) {
  const UdpListener zwave("127.255.255.254", 8888);
  const Ended cancelled =
      Program(assocCommand({"cancel"}), {{"TEMBRA_LOG", "stderr"}, {"TEMBRA_LOG_LEVEL", "progress"}}).end();
  EXPECT_EQ(cancelled.status, 0);
  EXPECT_NE(cancelled.errors.find("progress: libTembraAssoc:Thread created successfully\n"), std::string::npos)
      << cancelled.errors;
}

}  // namespace
}  // namespace tembra::test
