// The example that the README tells to play does what its own page says.
#include <gtest/gtest.h>

#include "support/program.h"

namespace tembra::test {
namespace {

TEST(Example, OfAPlugAndAContactLetsTwoDevicesJoinAndOneLeave) {
  const std::string scenario = TEMBRA_EXAMPLES "/plug-and-contact.json";
  Program router({TEMBRA_SIM_PROGRAM, "run", "--speed", "50", "--scenario", scenario});
  router.waitFor("tembra-sim: ready");
  const Ended plug = runAssoc({"add", "--yes"});
  EXPECT_EQ(plug.status, 0) << plug.errors;
  const Ended contact = runAssoc({"add", "--yes"});
  EXPECT_EQ(contact.status, 0) << contact.errors;
  EXPECT_EQ(runAssoc({"devices"}).output,
            "Id  Name              Type           Radio   Address  Values\n"
            "1   MeterSwitch #1    MeterSwitch    Z-Wave  2        0\n"
            "2   ContactSwitch #2  ContactSwitch  ZigBee  0x1a01   3\n");
  const Ended removed = runAssoc({"remove", "--yes"});
  EXPECT_EQ(removed.status, 0) << removed.errors;
  EXPECT_EQ(runAssoc({"devices"}).output,
            "Id  Name              Type           Radio   Address  Values\n"
            "2   ContactSwitch #2  ContactSwitch  ZigBee  0x1a01   3\n");
  const Ended ended = router.end();
  EXPECT_EQ(ended.status, 0) << ended.errors;
}

}  // namespace
}  // namespace tembra::test
