// A receive pass asks nothing of the system that it need not.
#include <gtest/gtest.h>

#include "rig/system_calls.h"

namespace {

TEST(SystemCalls, APassSetsItsTimeOutReceivesAndSendsWhatItHasTo) {
  constexpr int passes = 5;
  for (const bench::Datagram& datagram : bench::datagramsOfAllFlows()) {
    const std::vector<std::string> expected(passes, bench::necessarySystemCalls(datagram));
    EXPECT_EQ(bench::systemCallsOfPasses(datagram, passes), expected) << datagram.name;
  }
}

}  // namespace
