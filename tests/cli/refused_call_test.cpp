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

constexpr char kNoSocket[] = "The connection could not be opened (Too many open files).";
constexpr char kNotSent[] = "(Operation not permitted).";
constexpr char kDeaf[] = "The library has no thread to receive with (Resource temporarily unavailable).";

const RefusedCall kNoConnections[] = {
    {"SocketOfAnAdd", "socket", {"add", "--yes"}, kNoSocket},
    {"SocketOfACancel", "socket", {"cancel"}, kNoSocket},
    {"Priority", "setsockopt", {"cancel"}, "The connection could not be opened (Operation not permitted)."},
    {"Address", "bind", {"cancel"}, "The connection could not be opened (Permission denied)."},
    {"ReceiveThreadOfACancel", "receive-thread", {"cancel"}, kDeaf},
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
  EXPECT_NE(ended.errors.find(GetParam().sentence), std::string::npos) << ended.errors;
}

INSTANTIATE_TEST_SUITE_P(Of, RefusedCallTest, testing::ValuesIn(kNoConnections),
                         [](const auto& test) { return test.param.name; });

TEST(FrontEndKit, WithoutAThreadIsToldSo) {
  const Ended list = Program(assocCommand({"hue", "list"}), bentCalls("own-thread")).end();
  EXPECT_EQ(list.status, 3);
  EXPECT_EQ(list.sentence(), "tembra-assoc: the front-end kit cannot be made: Resource temporarily unavailable");
}

TEST(Add, WhoseDeviceCannotBeHandedOverSaysWhy) {
  SimRouter router;
  Program add(assocCommand({"add", "--yes"}), bentCalls("sendto-home"));
  router.pressOnAdd("siren");
  const Ended added = add.end();
  EXPECT_EQ(added.status, 3);
  EXPECT_NE(added.errors.find("(No buffer space available)"), std::string::npos) << added.errors;
}

TEST(MissingCommand, OfTheRouterDoesNoHarm) {
  const UdpListener zwave("127.255.255.254", 8888);
  const Ended cancelled = Program(assocCommand({"cancel", "zwave", "--json"}), {{"PATH", "/usr/bin:/bin"}}).end();
  EXPECT_EQ(cancelled.status, 0);
  EXPECT_NE(cancelled.errors.find("nvram_get"), std::string::npos) << cancelled.errors;
  EXPECT_EQ(cancelled.output, "{\"schema\":1,\"event\":\"cancelled\",\"radios\":[\"Z-Wave\"]}\n");
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
