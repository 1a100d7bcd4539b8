// Cancelling reaches the radios that were named, and only those.
#include <gtest/gtest.h>
#include <tembra/records.h>

#include <cstring>
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

INSTANTIATE_TEST_SUITE_P(Radios, CancelTest, testing::ValuesIn(kCancelCases),
                         [](const auto& test) { return test.param.name; });

}  // namespace
}  // namespace tembra::test
