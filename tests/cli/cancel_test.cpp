// Cancelling reaches the radios that were named, and only those.
#include <gtest/gtest.h>
#include <tembra/records.h>

#include <cstring>
#include <optional>
#include <ostream>

#include "support/program.h"
#include "support/udp_listener.h"

namespace tembra::test {
namespace {

struct CancelCase {
  const char* name;
  std::vector<std::string> arguments;
  bool zigbee;
  bool zwave;
};

void PrintTo(const CancelCase& row, std::ostream* out) { *out << row.name; }

const CancelCase kCancelCases[] = {
    {"Both", {"cancel", "both"}, true, true},
    {"BothByDefault", {"cancel"}, true, true},
    {"Zigbee", {"cancel", "zigbee"}, true, false},
    {"Zwave", {"cancel", "zwave"}, false, true},
};

bool isCancel(const std::string& datagram) {
  ZwaveCommand command{};
  if (datagram.size() != sizeof command) return false;
  std::memcpy(&command, datagram.data(), sizeof command);
  return command.operation == 4 && command.controllerCommand == 0;
}

class CancelTest : public testing::TestWithParam<CancelCase> {};

TEST_P(CancelTest, TellsTheRadios) {
  const ZigbeeListener zigbee;
  const UdpListener zwave("127.255.255.254", 8888);
  EXPECT_EQ(runAssoc(GetParam().arguments).status, 0);
  EXPECT_EQ(zigbee.takeCommand(), GetParam().zigbee ? "network pjoin 0/cancel" : "");
  const auto datagram = zwave.take();
  EXPECT_EQ(datagram.has_value() && isCancel(*datagram), GetParam().zwave);
}

// Nobody answers a cancel: without a look at who listens it would seem to be done.
struct Missing {
  const char* name;
  std::vector<std::string> arguments;
  bool zwave;  ///< the Z-Wave server runs
  int status;
  const char* errors;
};

void PrintTo(const Missing& row, std::ostream* out) { *out << row.name; }

const Missing kMissing[] = {
    {"NoRadio",
     {"cancel"},
     false,
     3,
     "tembra-assoc: Neither a Z-Wave nor a ZigBee server runs on this router. Start the radio servers.\n"},
    {"TheRadioThatIsMeant",
     {"cancel", "zigbee"},
     true,
     3,
     "tembra-assoc: The ZigBee server does not run on this router. Start the ZigBee server.\n"},
    {"OneOfBoth", {"cancel", "both"}, true, 0, "tembra-assoc: The ZigBee server does not run on this router.\n"},
};

class CancelOnMissing : public testing::TestWithParam<Missing> {};

TEST_P(CancelOnMissing, IsTold) {
  std::optional<UdpListener> zwave;
  if (GetParam().zwave) zwave.emplace("127.255.255.254", 8888);
  const Ended ended = runAssoc(GetParam().arguments);
  EXPECT_EQ(ended.status, GetParam().status);
  EXPECT_EQ(ended.errors, GetParam().errors);
}

INSTANTIATE_TEST_SUITE_P(Radios, CancelOnMissing, testing::ValuesIn(kMissing),
                         [](const auto& test) { return test.param.name; });

TEST(CancelForPrograms, SaysWhereOrWhyNot) {
  EXPECT_EQ(runAssoc({"cancel", "--json"}).output,
            R"({"schema":1,"event":"error","status":3,"reason":"no-radio-server",)"
            R"("text":"Neither a Z-Wave nor a ZigBee server runs on this router.","advice":"Start the radio servers."})"
            "\n");
  const UdpListener zwave("127.255.255.254", 8888);
  EXPECT_EQ(runAssoc({"cancel", "zwave", "--json"}).output, R"({"schema":1,"event":"cancelled","radios":["Z-Wave"]})"
                                                            "\n");
}

INSTANTIATE_TEST_SUITE_P(Radios, CancelTest, testing::ValuesIn(kCancelCases),
                         [](const auto& test) { return test.param.name; });

}  // namespace
}  // namespace tembra::test
