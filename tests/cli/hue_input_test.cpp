// What the Hue and the Nest commands do not take, and no server gets to see.
#include <gtest/gtest.h>

#include <ostream>

#include "support/program.h"
#include "support/udp_listener.h"

namespace tembra::test {
namespace {

constexpr char kSomeBridge[] = "02:a1:b2:0c:00:01";

struct BadInput {
  const char* name;
  std::vector<std::string> arguments;
  const char* says;
};

void PrintTo(const BadInput& row, std::ostream* out) { *out << row.name; }

const BadInput kBadInputs[] = {
    {"NoHueCommand", {"hue"}, "a command is needed"},
    {"UnknownHueCommand", {"hue", "paint"}, "paint"},
    {"CommandOfAnotherKind", {"hue", "devices"}, "devices"},
    {"NoBridge", {"hue", "add"}, "bridge is required"},
    {"NoBulb", {"hue", "add-bulb", kSomeBridge}, "bulb is required"},
    {"MacTooShort", {"hue", "add", "02:a1:b2:0c:00:0"}, "is no MAC address"},
    {"MacTooLong", {"hue", "add", "02:a1:b2:0c:00:011"}, "is no MAC address"},
    {"MacWithOtherLetters", {"hue", "remove", "02:a1:b2:0c:00:0g", "--yes"}, "is no MAC address"},
    {"MacWithoutColons", {"hue", "refresh", "02-a1-b2-0c-00-01"}, "is no MAC address"},
    {"BulbWithoutName", {"hue", "add-bulb", kSomeBridge, ""}, "bulb: the name is empty"},
    {"BulbTooLong", {"hue", "add-bulb", kSomeBridge, std::string(50, 'x')}, "the text is longer than 49 bytes"},
    {"TextTooLong", {"hue", "refresh", kSomeBridge, std::string(50, 'x')}, "the text is longer than 49 bytes"},
    {"HueRemoveIsNotConfirmed", {"hue", "remove", kSomeBridge}, "--yes confirms"},
    {"NoNestCommand", {"nest"}, "a command is needed"},
    {"NoCode", {"nest", "link"}, "code is required"},
    {"CodeTooLong", {"nest", "link", std::string(248, 'x')}, "the code is longer than 247 bytes"},
    {"NestUnlinkIsNotConfirmed", {"nest", "unlink"}, "--yes confirms"},
};

class BadInputTest : public testing::TestWithParam<BadInput> {};

TEST_P(BadInputTest, ReachesNoServer) {
  const UdpListener hue("127.255.255.252", 8888);
  const UdpListener nest("127.255.255.251", 8888);
  const Ended ended = runAssoc(GetParam().arguments);
  EXPECT_EQ(ended.status, 2);
  EXPECT_NE(ended.errors.find(GetParam().says), std::string::npos) << ended.errors;
  EXPECT_EQ(hue.take(), std::nullopt);
  EXPECT_EQ(nest.take(), std::nullopt);
}

INSTANTIATE_TEST_SUITE_P(HueAndNest, BadInputTest, testing::ValuesIn(kBadInputs),
                         [](const auto& test) { return test.param.name; });

}  // namespace
}  // namespace tembra::test
