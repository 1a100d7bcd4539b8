// Resetting: which radios hear of it, and what becomes of the device list.
#include <gtest/gtest.h>

#include "support/sim_router.h"
#include "support/udp_listener.h"

namespace tembra::test {
namespace {

TEST(Reset, OfAllEmptiesTheDeviceList) {
  const ZigbeeListener zigbee;
  SimRouter router;
  ASSERT_EQ(router.add("siren", {}).status, 0);
  static_cast<void>(zigbee.takeCommand());
  static_cast<void>(zigbee.takeCommand());
  const Ended reset = runAssoc({"reset", "all", "--yes"}, Clock::kFast);
  EXPECT_EQ(reset.status, 0) << reset.errors;
  EXPECT_EQ(zigbee.takeCommand(), "n l/");
  EXPECT_EQ(zigbee.takeCommand(), "option button0/");
  router.waitFor("library -> Z-Wave server   reset");
  router.waitFor("HA server -> database   every device dropped");
  EXPECT_EQ(runAssoc({"devices", "--json"}).output, "");
  router.stop();
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
  SimRouter router;
  const Ended reset = runAssoc({"reset", "both", "--yes"}, Clock::kFast);
  EXPECT_EQ(reset.status, 0);
  EXPECT_NE(reset.errors.find("the ZigBee server (127.255.255.253:8888) is not running and hears nothing of this."),
            std::string::npos);
  router.stop();
}

TEST(Reset, ThatIsInterruptedIsDoneAllTheSame) {
  const ZigbeeListener zigbee;
  SimRouter router;
  Program reset(assocCommand({"reset", "both", "--yes"}), Clock::kFast);
  router.waitFor("library -> Z-Wave server   reset");
  EXPECT_EQ(zigbee.takeCommand(), "n l/");
  EXPECT_EQ(zigbee.takeCommand(), "option button0/");
  reset.signal(SIGINT);
  EXPECT_EQ(reset.end().status, 130);
  router.stop();
}

}  // namespace
}  // namespace tembra::test
