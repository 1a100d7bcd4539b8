// Without its servers, or with its place taken, no command pretends to work.
#include <gtest/gtest.h>

#include <optional>
#include <ostream>

#include "support/program.h"
#include "support/sim_router.h"
#include "support/terminal.h"
#include "support/udp_listener.h"

namespace tembra::test {
namespace {

constexpr char kNoRadio[] = "Neither a Z-Wave nor a ZigBee server runs on this router.";
constexpr char kNoHome[] = "The HA server does not run on this router.";
constexpr char kTaken[] = "Another front end has the connection";

struct ConnectionCase {
  const char* name;
  std::vector<std::string> arguments;
  bool zwave;  ///< the Z-Wave server runs
  bool home;   ///< the home-automation server runs
  const char* sentence;
};

void PrintTo(const ConnectionCase& row, std::ostream* out) { *out << row.name; }

const ConnectionCase kConnectionCases[] = {
    {"AddWithoutRadios", {"add"}, false, true, kNoRadio},
    {"AddWithoutHome", {"add"}, true, false, kNoHome},
    {"AddWhenTaken", {"add"}, true, true, kTaken},
    {"RemoveWithoutRadios", {"remove", "--yes"}, false, true, kNoRadio},
    {"RemoveWithoutHome", {"remove", "--yes"}, true, false, kNoHome},
    {"RemoveWhenTaken", {"remove", "--yes"}, true, true, kTaken},
    {"CancelWhenTaken", {"cancel"}, true, false, kTaken},
    {"ResetWithoutRadios", {"reset", "both", "--yes"}, false, true, kNoRadio},
    {"ResetAllWithoutHome", {"reset", "all", "--yes"}, true, false, kNoHome},
    {"ResetWhenTaken", {"reset", "zwave", "--yes"}, true, false, kTaken},
};

class ConnectionTest : public testing::TestWithParam<ConnectionCase> {};

TEST_P(ConnectionTest, FailsWithOneSentence) {
  const UdpListener otherFrontEnd("127.255.255.4", 8888);
  std::optional<UdpListener> zwave;
  std::optional<UdpListener> home;
  if (GetParam().zwave) zwave.emplace("127.255.255.254", 8888);
  if (GetParam().home) home.emplace("127.255.255.1", 9999);
  const Ended ended = runAssoc(GetParam().arguments);
  EXPECT_EQ(ended.status, 3);
  EXPECT_NE(ended.sentence().find(GetParam().sentence), std::string::npos) << ended.errors;
}

INSTANTIATE_TEST_SUITE_P(Commands, ConnectionTest, testing::ValuesIn(kConnectionCases),
                         [](const auto& test) { return test.param.name; });

TEST(Connection, InUseIsASentenceWithoutTheLinesOfTheLog) {
  SimRouter router;
  Program add(assocCommand({"add"}));
  router.waitFor("library -> Z-Wave server   add a device");
  Terminal terminal({"/bin/sh", "-c", "unset TEMBRA_LOG; " TEMBRA_ASSOC_PROGRAM " add | cat"});
  terminal.waitFor("tembra-assoc: Another front end has the connection");
  static_cast<void>(terminal.end());
  EXPECT_EQ(terminal.screen().find("libTembraAssoc"), std::string::npos) << terminal.screen();
}

}  // namespace
}  // namespace tembra::test
