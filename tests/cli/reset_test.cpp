// Resetting: which radios hear of it, and what becomes of the device list.
#include <gtest/gtest.h>

#include <csignal>

#include "support/sim_router.h"
#include "support/udp_listener.h"

namespace tembra::test {
namespace {

TEST(Reset, OfAllEmptiesTheDeviceList) {
  SimRouter router;
  ASSERT_EQ(router.add("siren", {}).status, 0);
  const Ended reset = runAssoc({"reset", "all", "--yes"}, Clock::kFast);
  EXPECT_EQ(reset.status, 0) << reset.errors;
  router.waitFor("HA server -> database   every device dropped");
  EXPECT_EQ(runAssoc({"devices", "--json"}).output, "");
  const Told told = router.stop();
  EXPECT_EQ(told.zigbee,
            (std::vector<std::string>{"add a device", "cancel", "reset, first half", "reset, second half"}));
  EXPECT_EQ(told.zwave, (std::vector<std::string>{"add a device", "reset"}));
}

TEST(Reset, OfTheZwaveNetworkKeepsTheDeviceList) {
  SimRouter router;
  ASSERT_EQ(router.add("siren", {}).status, 0);
  EXPECT_EQ(runAssoc({"reset", "zwave", "--yes"}, Clock::kFast).status, 0);
  router.waitFor("library -> Z-Wave server   reset");
  EXPECT_NE(runAssoc({"devices"}).output.find("Siren #1"), std::string::npos);
  router.stop();
}

TEST(Reset, ComplainsOfARadioThatHearsNothing) {
  const UdpListener zwave("127.255.255.254", 8888);
  const Ended reset = runAssoc({"reset", "both", "--yes"}, Clock::kFast);
  EXPECT_EQ(reset.status, 0);
  EXPECT_NE(reset.errors.find("The ZigBee server does not run on this router"), std::string::npos);
}

TEST(Reset, ThatIsInterruptedIsDoneAllTheSame) {
  SimRouter router;
  Program reset(assocCommand({"reset", "both", "--yes"}), Clock::kFast);
  router.waitFor("library -> ZigBee server   reset, first half");
  reset.signal(SIGINT);
  EXPECT_EQ(reset.end().status, 130);
  const Told told = router.stop();
  EXPECT_EQ(told.zigbee, (std::vector<std::string>{"reset, first half", "reset, second half"}));
  EXPECT_EQ(told.zwave, (std::vector<std::string>{"reset"}));
}

}  // namespace
}  // namespace tembra::test
